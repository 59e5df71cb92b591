#include "shell/ui/frmMain.h"

#include "common/tools.h"
#include "common/ui/formhelpers.h"

namespace slipbook::shell {

// The windows the main window opens: by tool, by name for another window, and the prediction
// and tune-up windows of each car.

void frmMain::RegisterDelete(const QString& key, DeleteHandler remove,
                             std::function<bool(const QString&)> canDelete) {
    lists_[key].remove = std::move(remove);
    lists_[key].canDelete = std::move(canDelete);
    DeleteToolRefresh();
}

void frmMain::RegisterPrediction(PredictionFactory factory) {
    predictionFactory_ = std::move(factory);
    Available(tools::kETTS);
}

void frmMain::RegisterTuneUp(TuneUpFactory factory) {
    tuneUpFactory_ = std::move(factory);
    Available(tools::kTuneUp);
}

void frmMain::RegisterShow(QStringView name, ShowHandler show) {
    shows_.insert(name.toString(), std::move(show));
}

QWidget* frmMain::OpenWindow(const QString& toolId) const {
    return open_.value(toolId).data();
}

QWidget* frmMain::ShowWindow(QStringView name, qint64 id) {
    const ShowHandler show = shows_.value(name.toString());
    return show ? show(context_, this, id) : nullptr;
}

void frmMain::ShowToolWindow(const QString& key) {
    QWidget* w = nullptr;
    {
        const BusyCursor busy;
        w = ToolWindow(key);
    }
    if (w != nullptr) {
        w->show();
        w->raise();
        w->activateWindow();
    }
}

QWidget* frmMain::ToolWindow(const QString& toolId) {
    if (QWidget* w = open_.value(toolId).data()) {
        return w;
    }
    const ListHandlers handlers = lists_.value(toolId);
    if (!handlers.open) {
        return nullptr;
    }
    QWidget* w = handlers.open(context_, this);
    if (w != nullptr) {
        open_[toolId] = w;
    }
    return w;
}

void frmMain::ProgramWindowTool(bool prediction) {
    const QString car = GetCar_num();
    BusyCursor busy;
    if (prediction) {
        if (PredictionWindow* w = predictions_.Find(car)) {
            w->Widget()->show();
            w->Widget()->raise();
            w->FormReLoad();
            return;
        }
        const int slot = predictions_.Valid();
        if (slot == 0 || !predictionFactory_) {
            if (slot == 0) {
                messages_.inform(QStringLiteral("Can't load another ET Prediction window!"));
            }
            return;
        }
        PredictionWindow* w = predictionFactory_(context_, this);
        predictions_.Put(slot, w);
        w->Widget()->show();
    } else {
        if (TuneUpWindow* w = tuneUps_.Find(car)) {
            w->Widget()->show();
            w->Widget()->raise();
            w->FormReLoad();
            return;
        }
        const int slot = tuneUps_.Valid();
        if (slot == 0 || !tuneUpFactory_) {
            if (slot == 0) {
                messages_.inform(QStringLiteral("Can't load another Tune Up window!"));
            }
            return;
        }
        TuneUpWindow* w = tuneUpFactory_(context_, this);
        tuneUps_.Put(slot, w);
        w->Widget()->show();
    }
}

void frmMain::CalcAllETPrediction(const QString& corrFactorText, const QString& densityAltText) {
    predictions_.ForEachLive(
        [&](PredictionWindow& w) { w.ApplyWeather(corrFactorText, densityAltText); });
}

void frmMain::CalcAllTuneUp(const QString& airDensityText) {
    tuneUps_.ForEachLive([&](TuneUpWindow& w) { w.ApplyAirDensity(airDensityText); });
}

QString frmMain::WeatherText(const QString& controlName) {
    if (const auto* weather = dynamic_cast<const WeatherSource*>(OpenWindow(tools::kWeather))) {
        return weather->FieldText(controlName);
    }
    return QStringLiteral("0");
}

QString frmMain::GetCar_num() {
    store::Query q = db_.OpenQuery(QStringLiteral("SELECT * FROM tblCars WHERE lCar_id = ") +
                                   QString::number(state_.car.id));
    return q.Next() ? q.Text(q.FieldIndex(QStringLiteral("sCar_num"))) : QString();
}

void frmMain::DblClick() {
    const ListHandlers handlers = lists_.value(state_.view);
    if (!handlers.open) {
        return;
    }
    QString caption;
    if (state_.storedTool == tools::kNewRun || state_.storedTool == tools::kNew ||
        model_->RowCount() == 0) {
        state_.storedTool = tools::kNew;
        caption = QStringLiteral("New");
    } else {
        caption = SelectedCellText(1).trimmed();
    }
    static const QHash<QString, QString> kNouns = {
        {tools::kRuns, QStringLiteral(" - Run ")},
        {tools::kCars, QStringLiteral(" - Car ")},
        {tools::kEvents, QStringLiteral(" - Event ")},
        {tools::kTracks, QStringLiteral(" - Track ")},
        {tools::kExpenses, QStringLiteral(" - Expense ")},
        {tools::kMaintenance, QStringLiteral(" - Maintenance ")}};
    caption += kNouns.value(state_.view);
    if (state_.filter.active) {
        caption += QStringLiteral(" (Filter Active)");
    }
    // One record window of a kind: the open one is closed first, with its save question.
    if (QWidget* old = open_.value(state_.view).data()) {
        if (!old->close()) {
            return;
        }
    }
    QWidget* w = handlers.open(context_, this);
    if (w == nullptr) {
        return;
    }
    w->setWindowTitle(caption);
    open_[state_.view] = w;
    w->show();
}

void frmMain::RecordDelete() {
    const ListHandlers handlers = lists_.value(state_.view);
    if (handlers.remove && model_->RowCount() > 0) {
        handlers.remove(context_, this, SelectedKeyText());
    }
}

}  // namespace slipbook::shell
