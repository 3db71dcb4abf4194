#include "gui/Pages.h"

#include "app/FileKinds.h"
#include "checksums/ChecksumTab.h"
#include "codecs/ConversionTab.h"
#include "gui/AboutPage.h"
#include "gui/ChecksumPage.h"
#include "gui/ConversionPage.h"

#include <QHash>

namespace quav {

namespace {

using Factory = QWidget* (*)(BaseTab*);

template <ConversionPage::Action action>
QWidget* conversionPage(BaseTab* tab) {
    auto* own = qobject_cast<ConversionTab*>(tab);
    Q_ASSERT(own);
    return new ConversionPage(*own, action);
}

QWidget* checksumPage(BaseTab* tab) {
    auto* own = qobject_cast<ChecksumTab*>(tab);
    Q_ASSERT(own);
    return new ChecksumPage(*own);
}

QWidget* aboutPage(BaseTab* /*tab*/) {
    return new AboutPage;
}

} // namespace

QWidget* makePage(const QString& label, BaseTab* tab) {
    static const QHash<QString, Factory> factories{
        {tabs::decode, conversionPage<ConversionPage::decoding>},
        {tabs::encode, conversionPage<ConversionPage::encoding>},
        {tabs::checksum, checksumPage},
        {tabs::about, aboutPage},
    };
    const Factory make = factories.value(label);
    Q_ASSERT(make);
    return make(tab);
}

} // namespace quav
