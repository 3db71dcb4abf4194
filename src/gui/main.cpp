#include "gui/Application.h"

int main(int argc, char** argv) {
    return quav::runApplication(argc, argv);
}
