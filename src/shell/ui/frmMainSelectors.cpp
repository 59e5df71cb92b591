#include "shell/ui/frmMain.h"

#include "common/tools.h"
#include "shell/defaultcar.h"
#include "shell/ui/fitwidgets.h"
#include "store/access.h"
#include "views/viewstore.h"

#include <QComboBox>

namespace slipbook::shell {

// ---------------------------------------------------------------------------------------------
// Selectors

qint64 frmMain::ItemKey(const QComboBox* combo, int index) {
    return index < 0 ? 0 : combo->itemData(index).toLongLong();
}

void frmMain::FillSelector(QComboBox* combo, const QString& sql, const QString& keyColumn,
                           const QString& textColumn, const QString& firstRow) {
    combo->clear();
    if (!firstRow.isEmpty()) {
        combo->addItem(firstRow, QVariant::fromValue<qint64>(0));
    }
    store::Query q = db_.OpenQuery(sql);
    const int key = q.FieldIndex(keyColumn);
    const int text = q.FieldIndex(textColumn);
    while (q.Next()) {
        combo->addItem(q.Text(text), QVariant::fromValue<qint64>(q.Value(key).toLongLong()));
    }
}

void frmMain::CarsLoad() {
    ReportStatus(QStringLiteral("Loading Cars..."));
    const bool hasDefault =
        db_.FieldExists(QStringLiteral("tblcars"), QStringLiteral("bDefault_fl"));
    carList_->clear();
    int chosen = 0;
    store::Query q = db_.OpenQuery(QStringLiteral("SELECT * from tblCars ORDER BY sCar_nm"));
    const int key = q.FieldIndex(QStringLiteral("lCar_id"));
    const int name = q.FieldIndex(QStringLiteral("sCar_nm"));
    const int flag = q.FieldIndex(QStringLiteral("bDefault_fl"));
    while (q.Next()) {
        carList_->addItem(q.Text(name), QVariant::fromValue<qint64>(q.Value(key).toLongLong()));
        if (hasDefault && flag >= 0 && q.Value(flag).toLongLong() != 0) {
            chosen = carList_->count() - 1;
        }
    }
    if (carList_->count() > 0) {
        carList_->setCurrentIndex(chosen);
        state_.car.id = ItemKey(carList_, chosen);
        state_.car.desc = carList_->itemText(chosen);
    } else {
        state_.car.id = 0;
        state_.car.desc.clear();
    }
}

void frmMain::EventsLoad() {
    ReportStatus(QStringLiteral("Loading Events..."));
    FillSelector(eventList_, QStringLiteral("SELECT * from tblEvents ORDER BY sEvent_nm"),
                 QStringLiteral("lEvent_id"), QStringLiteral("sEvent_nm"),
                 QStringLiteral("<All Events>"));
    eventList_->setCurrentIndex(0);
}

void frmMain::TrackLoad() {
    ReportStatus(QStringLiteral("Loading Tracks..."));
    FillSelector(trackList_, QStringLiteral("SELECT * from tblTracks ORDER BY sTrack_nm"),
                 QStringLiteral("lTrack_id"), QStringLiteral("sTrack_nm"),
                 QStringLiteral("<All Tracks>"));
    trackList_->setCurrentIndex(0);
}

void frmMain::ViewsLoad() {
    ReportStatus(QStringLiteral("Loading Views..."));
    views_->clear();
    int chosen = -1;
    // A logbook whose view list is gone still opens, with the runs under their key.
    if (db_.TableExists(QStringLiteral("tblViews"))) {
        store::Query q = db_.OpenQuery(
            QStringLiteral("SELECT * from tblViews ORDER BY bReadOnlyView_fl, sView_desc"));
        const int key = q.FieldIndex(QStringLiteral("lView_id"));
        const int name = q.FieldIndex(QStringLiteral("sView_desc"));
        const int readOnly = q.FieldIndex(QStringLiteral("bReadOnlyView_fl"));
        const int flag = q.FieldIndex(QStringLiteral("bDefault_fl"));
        while (q.Next()) {
            const QString text = q.Text(name);
            views_->addItem(q.Value(readOnly).toLongLong() != 0 ? text.toUpper() : text,
                            QVariant::fromValue<qint64>(q.Value(key).toLongLong()));
            if (q.Value(flag).toLongLong() != 0) {
                chosen = views_->count() - 1;
            }
        }
    }
    if (chosen >= 0) {
        views_->setCurrentIndex(chosen);
    }
}

void frmMain::SelectorPicked(const QString& id) {
    if (id == tools::kCarList) {
        state_.car.desc = carList_->currentText();
        state_.car.id = ItemKey(carList_, carList_->currentIndex());
        // The car picked is the car of the next start.
        SetDefaultCar(db_, state_.car.id);
        if (!loading_) {
            ToolClick(tools::kRuns);
        }
    } else if (id == tools::kEventList) {
        state_.event.desc = eventList_->currentText();
        state_.event.id = ItemKey(eventList_, eventList_->currentIndex());
        if (!loading_) {
            ToolClick(tools::kRuns);
        }
    } else if (id == tools::kTrackList) {
        state_.track.desc = trackList_->currentText();
        state_.track.id = ItemKey(trackList_, trackList_->currentIndex());
        if (!loading_) {
            ToolClick(tools::kRuns);
        }
    } else if (id == tools::kViews) {
        ListLoad(state_.view);
        const qint64 view = ItemKey(views_, views_->currentIndex());
        // The view picked is the view of the next start.
        if (view != 0 && db_.TableExists(QStringLiteral("tblViews"))) {
            views::DefaultViewSet(db_, views::ViewTable(db_, view));
        }
    }
}

bool frmMain::SelectView(qint64 viewId) {
    const int i = views_->findData(QVariant::fromValue<qint64>(viewId));
    if (i < 0) {
        return false;
    }
    views_->setCurrentIndex(i);
    SelectorPicked(tools::kViews);
    return true;
}

qint64 frmMain::CurrentViewId() const {
    return ItemKey(views_, views_->currentIndex());
}

void frmMain::SelectCar(qint64 id) {
    const int i = carList_->findData(QVariant::fromValue<qint64>(id));
    if (i >= 0) {
        carList_->setCurrentIndex(i);
        SelectorPicked(tools::kCarList);
    }
}

void frmMain::KeepCar(qint64 id) {
    const int i = carList_->findData(QVariant::fromValue<qint64>(id));
    if (i < 0) {
        // The current car is gone: the default one, as loaded, takes its place.
        if (carList_->count() > 0) {
            SelectorPicked(tools::kCarList);
        } else if (!loading_) {
            ToolClick(tools::kRuns);
        }
        return;
    }
    // Not a pick: the default flag another window has just written stays where it was put.
    carList_->setCurrentIndex(i);
    state_.car.id = id;
    state_.car.desc = carList_->itemText(i);
    if (!loading_) {
        ToolClick(tools::kRuns);
    }
}

void frmMain::SelectEvent(qint64 id) {
    const int i = eventList_->findData(QVariant::fromValue<qint64>(id));
    eventList_->setCurrentIndex(i < 0 ? 0 : i);
    SelectorPicked(tools::kEventList);
}

void frmMain::SelectTrack(qint64 id) {
    const int i = trackList_->findData(QVariant::fromValue<qint64>(id));
    trackList_->setCurrentIndex(i < 0 ? 0 : i);
    SelectorPicked(tools::kTrackList);
}

void frmMain::FormLoadStuff() {
    ViewsLoad();
    EventsLoad();
    TrackLoad();
    CarsLoad();
    state_.event.desc = eventList_->currentText();
    state_.event.id = ItemKey(eventList_, eventList_->currentIndex());
    state_.track.desc = trackList_->currentText();
    state_.track.id = ItemKey(trackList_, trackList_->currentIndex());
    loading_ = false;
    ReportStatus(QStringLiteral("Loading Runs..."));
    ToolClick(tools::kRuns);
    ReportStatus(QStringLiteral("Updating Notes..."));
    GridClick();
    ReportStatus(QStringLiteral("Please wait..."));
}

void frmMain::RecordsChanged(const QString& table) {
    // The current entry stays picked while it is there; a deleted one gives way to "<All ...>".
    if (table == u"tblEvents") {
        EventsLoad();
        SelectEvent(state_.event.id);
    } else if (table == u"tblTracks") {
        TrackLoad();
        SelectTrack(state_.track.id);
    } else if (table == u"tblCars") {
        const qint64 current = state_.car.id;
        CarsLoad();
        KeepCar(current);
    } else if (table == u"tblRuns") {
        if (state_.view == tools::kRuns) {
            ToolClick(tools::kRuns);
        }
    } else if (table == u"tblListViewColumns") {
        ViewsLoad();
        // The run list's headers are the catalogue's: the list is loaded anew to show them.
        if (state_.view == tools::kRuns) {
            ToolClick(tools::kRuns);
        }
    }
}

void frmMain::ReloadAll() {
    loading_ = true;
    ViewsLoad();
    EventsLoad();
    TrackLoad();
    CarsLoad();
    state_.event.desc = eventList_->currentText();
    state_.event.id = 0;
    state_.track.desc = trackList_->currentText();
    state_.track.id = 0;
    loading_ = false;
    ToolClick(tools::kRuns);
}

}  // namespace slipbook::shell
