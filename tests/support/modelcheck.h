#pragma once

// QAbstractItemModelTester over a model while the check lives: every signal the model sends is
// checked against what it reports, and each finding fails the running test.

#include <gtest/gtest.h>
#include <QAbstractItemModelTester>
#include <QtGlobal>

#include <memory>

namespace slipbook::test {

class ModelCheck {
public:
    explicit ModelCheck(QAbstractItemModel* model) {
        previous_ = qInstallMessageHandler(&ModelCheck::Handle);
        tester_ = std::make_unique<QAbstractItemModelTester>(
            model, QAbstractItemModelTester::FailureReportingMode::Warning);
    }
    ~ModelCheck() {
        tester_.reset();
        qInstallMessageHandler(previous_);
    }
    ModelCheck(const ModelCheck&) = delete;
    ModelCheck& operator=(const ModelCheck&) = delete;

private:
    static void Handle(QtMsgType type, const QMessageLogContext& context, const QString& text) {
        if (qstrcmp(context.category, "qt.modeltest") == 0 && type != QtDebugMsg) {
            ADD_FAILURE() << "model check: " << text.toStdString();
        } else if (previous_ != nullptr) {
            previous_(type, context, text);
        }
    }

    static inline QtMessageHandler previous_ = nullptr;
    std::unique_ptr<QAbstractItemModelTester> tester_;
};

}  // namespace slipbook::test
