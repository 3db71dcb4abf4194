#include "gui/Pages.h"

#include "app/FileKinds.h"
#include "checksums/ChecksumTab.h"
#include "codecs/DecodeTab.h"
#include "codecs/EncodeTab.h"
#include "gui/AboutPage.h"
#include "gui/ChecksumPage.h"
#include "gui/DecodePage.h"
#include "gui/EncodePage.h"

#include <QHash>

namespace quav {

namespace {

using Factory = QWidget* (*)(BaseTab*);

template <class Page, class Tab>
QWidget* pageOf(BaseTab* tab) {
    auto* own = qobject_cast<Tab*>(tab);
    Q_ASSERT(own);
    return new Page(*own);
}

QWidget* aboutPage(BaseTab* /*tab*/) {
    return new AboutPage;
}

} // namespace

QWidget* makePage(const QString& label, BaseTab* tab) {
    static const QHash<QString, Factory> factories{
        {tabs::decode, pageOf<DecodePage, DecodeTab>},
        {tabs::encode, pageOf<EncodePage, EncodeTab>},
        {tabs::checksum, pageOf<ChecksumPage, ChecksumTab>},
        {tabs::about, aboutPage},
    };
    const Factory make = factories.value(label);
    Q_ASSERT(make);
    return make(tab);
}

} // namespace quav
