// The main of every GUI test program: the one application object, made before any test runs,
// offscreen unless a platform is named.

#include "support/gui.h"

#include <gtest/gtest.h>
#include <QApplication>

#include <memory>

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    ::testing::InitGoogleTest(&argc, argv);
    const slipbook::test::ApplicationMaker make = slipbook::test::ApplicationMakerInUse();
    std::unique_ptr<QApplication> app(make != nullptr ? make(argc, argv)
                                                      : new QApplication(argc, argv));
    return RUN_ALL_TESTS();
}
