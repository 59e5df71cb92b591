-- Tables of the logbook. The template is generated from this file and its three sisters, in
-- the order schema, catalogue, views, seed; the program never creates a table at run time.
--
-- Widths: a bare Text is 255 characters. Names, codes and notes follow the table lists; Memo
-- holds the multi-line texts. Every column other than a key may be Null.
--
-- The template stands at the current level of the upgrade ladder: tblCarSetup exists with its
-- own two columns, tblCars has bDefault_fl and the base columns, the segment times and the
-- custom fields are in place, tblMaintenance exists, and tblCarBase (a holding table of one old
-- step) does not.

-- One row per car. The base set-up follows the flags, then the car's current tune-up under
-- the same names as in tblRuns, then the six user fields.
CREATE TABLE tblCars (
    lCar_id                     COUNTER CONSTRAINT PrimaryKey PRIMARY KEY,
    sCar_nm                     Text,
    sCar_num                    Text,
    sCarCarb_typ                Text,
    sCarFuel_typ                Text,
    sCarNotes_tx                Memo,
    iCarWeight_val              Integer,
    lCarryForward_info          YesNo,
    bDefault_fl                 YesNo,
    sBaseADR                    Text,
    sBaseJet                    Text,
    sBaseJetDiameter            Text,
    sBaseBypassPill             Text,
    sBaseBoost                  Text,
    sNozzleArea                 Text,
    sEngine_desc                Text,
    sValveLash_val              Text,
    sExhaustValveLash_val       Text,
    sTiming_val                 Text,
    sSparkPlugs_val             Text,
    sPlugGap_val                Text,
    sCamAdvance_val             Text,
    sBlowerOverdrive_val        Text,
    sJet1_val                   Text,
    sJet2_val                   Text,
    sJet3_val                   Text,
    sJet4_val                   Text,
    sJet5_val                   Text,
    sJet6_val                   Text,
    sJet7_val                   Text,
    sJet8_val                   Text,
    sCarburetor_val             Text,
    sSquirters1_val             Text,
    sSquirters2_val             Text,
    sSquirters3_val             Text,
    sSquirters4_val             Text,
    sPowerValves1_val           Text,
    sPowerValves2_val           Text,
    sPowerValves3_val           Text,
    sPowerValves4_val           Text,
    sHatNozzle1_val             Text(15),
    sHatNozzle2_val             Text(15),
    sHatNozzle3_val             Text(15),
    sHatNozzle4_val             Text(15),
    sHatNozzle5_val             Text(15),
    sHatNozzle6_val             Text(15),
    sHatNozzle7_val             Text(15),
    sHatNozzle8_val             Text(15),
    sManifoldNozzle1_val        Text(15),
    sManifoldNozzle2_val        Text(15),
    sManifoldNozzle3_val        Text(15),
    sManifoldNozzle4_val        Text(15),
    sManifoldNozzle5_val        Text(15),
    sManifoldNozzle6_val        Text(15),
    sManifoldNozzle7_val        Text(15),
    sManifoldNozzle8_val        Text(15),
    sBlowerNozzle1_val          Text(15),
    sBlowerNozzle2_val          Text(15),
    sBlowerNozzle3_val          Text(15),
    sBlowerNozzle4_val          Text(15),
    sBlowerNozzle5_val          Text(15),
    sBlowerNozzle6_val          Text(15),
    sBlowerNozzle7_val          Text(15),
    sBlowerNozzle8_val          Text(15),
    sHeadNozzle1_val            Text(15),
    sHeadNozzle2_val            Text(15),
    sHeadNozzle3_val            Text(15),
    sHeadNozzle4_val            Text(15),
    sHeadNozzle5_val            Text(15),
    sHeadNozzle6_val            Text(15),
    sHeadNozzle7_val            Text(15),
    sHeadNozzle8_val            Text(15),
    sMainBPJet_val              Text,
    sHiSpeedBPJet_val           Text,
    sHiSpeedSettingBPJet_val    Text,
    sOtherBPJet_val             Text,
    sOtherSettingBPJet_val      Text,
    sNitro_val                  Text,
    sTrans1_val                 Text,
    sTrans2_val                 Text,
    sTrans3_val                 Text,
    sTrans4_val                 Text,
    sTrans5_val                 Text,
    sConverter_val              Text,
    sRingPinion_val             Text,
    sSpringPressure_val         Text,
    sCounterWeight_val          Text,
    sFrontEndTravel_val         Text,
    sWheelieBarHeight_val       Text,
    sSlicks_val                 Text,
    sSuspensionBarLocations_val Text,
    sTirePressure_val           Text,
    sLaunchRPM_val              Text,
    sShiftRPM_val               Text,
    sDelayBox_val               Text,
    sThrottleStop1_val          Text,
    sThrottleStop2_val          Text,
    sThrottleStop3_val          Text,
    sThrottleStop4_val          Text,
    Custom1                     Text,
    Custom2                     Text,
    Custom3                     Text,
    Custom4                     Text,
    Custom5                     Text,
    Custom6                     Text
);

CREATE TABLE tblEvents (
    lEvent_id       COUNTER CONSTRAINT PrimaryKey PRIMARY KEY,
    sEvent_nm       Text,
    lTrack_id       Integer,
    dtEventStart_dt DateTime,
    dtEventEnd_dt   DateTime,
    lEventClass_id  Integer,
    cPurse_amt      Currency,
    sEventNotes_tx  Memo
);

CREATE TABLE tblEventClass (
    lEventClass_id COUNTER CONSTRAINT PrimaryKey PRIMARY KEY,
    sEventClass_nm Text
);

CREATE TABLE tblTracks (
    lTrack_id           COUNTER CONSTRAINT PrimaryKey PRIMARY KEY,
    sTrack_nm           Text,
    sTrackAddress_tx    Memo,
    sTrackContact_nm    Text,
    sTrackPhone         Text,
    sTrackInternet_url  Text,
    sTrackDirections_tx Memo,
    sTrackNotes_tx      Memo
);

CREATE TABLE tblExpenses (
    lExpense_id         COUNTER CONSTRAINT PrimaryKey PRIMARY KEY,
    dtExpense_dt        DateTime,
    lExpenseCategory_id Integer,
    cExpense_amt        Currency,
    lCar_id             Integer,
    lEvent_id           Integer,
    sExpenseNotes_tx    Memo
);

CREATE TABLE tblExpenseCategory (
    lExpenseCategory_id COUNTER CONSTRAINT PrimaryKey PRIMARY KEY,
    sExpenseCategory_nm Text
);

CREATE TABLE tblRunType (
    lRunType_id COUNTER CONSTRAINT PrimaryKey PRIMARY KEY,
    sRunType_nm Text
);

CREATE TABLE tblOpponent (
    lOpponent_id COUNTER CONSTRAINT PrimaryKey PRIMARY KEY,
    sOpponent_nm Text
);

-- The car and the run counts are Number, as the upgrade step that first made this table typed
-- them; the maintenance queries divide them and rely on a floating division.
CREATE TABLE tblMaintenance (
    lMaintenance_id      COUNTER CONSTRAINT PrimaryKey PRIMARY KEY,
    lCar_id              Number,
    bCompleted           YesNo,
    iScheduledRuns       Number,
    iRunsMade            Number,
    dtMaintenance_dt     DateTime,
    sMaintenanceNotes_tx Memo
);

-- One row per pass, in the order the run window writes the columns. Tune-up values are free
-- text; the nozzle columns are Text(15), the width the upgrade steps give the two newest.
CREATE TABLE tblRuns (
    lRun_id                     COUNTER CONSTRAINT PrimaryKey PRIMARY KEY,
    lEvent_id                   Integer,
    lCar_id                     Integer,
    lRun_num                    Integer,
    dtRun_dt                    DateTime,
    dtRun_tm                    DateTime,
    lOpponent_id                Integer,
    bFullRun_fl                 YesNo,
    lRunType_id                 Integer,
    lPoints_val                 Integer,
    iVehicleReactionTime_val    Number,
    iExhaustTemp_val            Number,
    sLogFile_nm                 Text,
    iTemp_val                   Number,
    iHumidity_val               Number,
    iBarometricPressure_val     Number,
    iPressureAltitude_val       Number,
    iCorrFactor_val             Number,
    iDensityAlt_val             Number,
    iAirDensity_val             Number,
    iVaporPressure_val          Number,
    iDewPoint_val               Number,
    iDryBarometer_val           Number,
    iWetBulbTemp_val            Number,
    sEngine_desc                Text,
    sValveLash_val              Text,
    sExhaustValveLash_val       Text,
    sTiming_val                 Text,
    sSparkPlugs_val             Text,
    sPlugGap_val                Text,
    sCamAdvance_val             Text,
    sBlowerOverdrive_val        Text,
    sJet1_val                   Text,
    sJet2_val                   Text,
    sJet3_val                   Text,
    sJet4_val                   Text,
    sJet5_val                   Text,
    sJet6_val                   Text,
    sJet7_val                   Text,
    sJet8_val                   Text,
    sCarburetor_val             Text,
    sSquirters1_val             Text,
    sSquirters2_val             Text,
    sSquirters3_val             Text,
    sSquirters4_val             Text,
    sPowerValves1_val           Text,
    sPowerValves2_val           Text,
    sPowerValves3_val           Text,
    sPowerValves4_val           Text,
    sBaseADR                    Text,
    sBaseJet                    Text,
    sBaseJetDiameter            Text,
    sBaseBypassPill             Text,
    sBaseBoost                  Text,
    sNozzleArea                 Text,
    sHatNozzle1_val             Text(15),
    sHatNozzle2_val             Text(15),
    sHatNozzle3_val             Text(15),
    sHatNozzle4_val             Text(15),
    sHatNozzle5_val             Text(15),
    sHatNozzle6_val             Text(15),
    sHatNozzle7_val             Text(15),
    sHatNozzle8_val             Text(15),
    sManifoldNozzle1_val        Text(15),
    sManifoldNozzle2_val        Text(15),
    sManifoldNozzle3_val        Text(15),
    sManifoldNozzle4_val        Text(15),
    sManifoldNozzle5_val        Text(15),
    sManifoldNozzle6_val        Text(15),
    sManifoldNozzle7_val        Text(15),
    sManifoldNozzle8_val        Text(15),
    sBlowerNozzle1_val          Text(15),
    sBlowerNozzle2_val          Text(15),
    sBlowerNozzle3_val          Text(15),
    sBlowerNozzle4_val          Text(15),
    sBlowerNozzle5_val          Text(15),
    sBlowerNozzle6_val          Text(15),
    sBlowerNozzle7_val          Text(15),
    sBlowerNozzle8_val          Text(15),
    sHeadNozzle1_val            Text(15),
    sHeadNozzle2_val            Text(15),
    sHeadNozzle3_val            Text(15),
    sHeadNozzle4_val            Text(15),
    sHeadNozzle5_val            Text(15),
    sHeadNozzle6_val            Text(15),
    sHeadNozzle7_val            Text(15),
    sHeadNozzle8_val            Text(15),
    sMainBPJet_val              Text,
    sHiSpeedBPJet_val           Text,
    sHiSpeedSettingBPJet_val    Text,
    sOtherBPJet_val             Text,
    sOtherSettingBPJet_val      Text,
    sNitro_val                  Text,
    sTrans1_val                 Text,
    sTrans2_val                 Text,
    sTrans3_val                 Text,
    sTrans4_val                 Text,
    sTrans5_val                 Text,
    sConverter_val              Text,
    sRingPinion_val             Text,
    sSpringPressure_val         Text,
    sCounterWeight_val          Text,
    sFrontEndTravel_val         Text,
    sWheelieBarHeight_val       Text,
    sSlicks_val                 Text,
    sSuspensionBarLocations_val Text,
    sTirePressure_val           Text,
    sLaunchRPM_val              Text,
    sShiftRPM_val               Text,
    sDelayBox_val               Text,
    sThrottleStop1_val          Text,
    sThrottleStop2_val          Text,
    sThrottleStop3_val          Text,
    sThrottleStop4_val          Text,
    iDialIn_val                 Number,
    sLane_nm                    Text,
    iReactionTime_val           Number,
    i60Foot_et                  Number,
    i330Foot_et                 Number,
    i18Mile_et                  Number,
    i18Mile_mph                 Number,
    i1000Foot_et                Number,
    i14Mile_et                  Number,
    i14Mile_mph                 Number,
    iMarginOfVictory_ft         Number,
    i60to330Foot_et             Number,
    i330to660Foot_et            Number,
    i660to1000Foot_et           Number,
    i1000to1320Foot_et          Number,
    sRunNotes_tx                Memo,
    Custom1                     Text,
    Custom2                     Text,
    Custom3                     Text,
    Custom4                     Text,
    Custom5                     Text,
    Custom6                     Text
);

-- The runs kept as set-up runs: a structural copy of tblRuns (same columns, same order, same
-- types), made the way an older logbook gets it, so a copy of a run lines up column for column.
-- The copied lRun_id is a plain Integer: a row keeps the id of the run it copies, and the same
-- run may be kept once per category and distance.
SELECT * INTO tblCarSetup FROM tblRuns WHERE False;
ALTER TABLE tblCarSetup ADD COLUMN sSetup_cat Text(15);
ALTER TABLE tblCarSetup ADD COLUMN bEighthNotQuarter YesNo;

-- The catalogue: one row per column the run grid can show. Ids are given by hand and named in
-- code, so the store must never assign them; the unique index keeps two rows from sharing one.
CREATE TABLE tblListViewColumns (
    lLVC_id         Integer,
    lOrder          Integer,
    sView_id        Text,
    sColumnHeader   Text,
    sFieldName      Text,
    sDisplayFormat  Text,
    sDataType       Text,
    sAlignment      Text,
    lColumnWidth    Integer,
    bVisible_fl     YesNo,
    bLookup_fl      YesNo,
    sLookupTable_nm Text,
    sLookupField_nm Text
);

CREATE UNIQUE INDEX ixListViewColumnsId ON tblListViewColumns (lLVC_id);

CREATE TABLE tblViews (
    lView_id         COUNTER CONSTRAINT PrimaryKey PRIMARY KEY,
    sView_desc       Text,
    sTable_nm        Text,
    bReadOnlyView_fl YesNo,
    bDefault_fl      YesNo
);

-- The four shipped view tables. A custom view is made later by SELECT ... INTO from the
-- catalogue, so these carry the catalogue's own column types.
CREATE TABLE tbl14MileView (
    lLVC_id       Integer,
    lOrder        Integer,
    sView_id      Text,
    sColumnHeader Text,
    bVisible_fl   YesNo
);

CREATE TABLE tbl18MileView (
    lLVC_id       Integer,
    lOrder        Integer,
    sView_id      Text,
    sColumnHeader Text,
    bVisible_fl   YesNo
);

CREATE TABLE tblThrottleStopView (
    lLVC_id       Integer,
    lOrder        Integer,
    sView_id      Text,
    sColumnHeader Text,
    bVisible_fl   YesNo
);

CREATE TABLE tblProView (
    lLVC_id       Integer,
    lOrder        Integer,
    sView_id      Text,
    sColumnHeader Text,
    bVisible_fl   YesNo
);

-- The run list is always one car's runs in date and time order, often narrowed to an event.
CREATE INDEX ixRunsCarDate ON tblRuns (lCar_id, dtRun_dt, dtRun_tm);
CREATE INDEX ixRunsEvent ON tblRuns (lEvent_id);
-- The set-up windows read one car's set-up runs of a category.
CREATE INDEX ixCarSetupCar ON tblCarSetup (lCar_id, sSetup_cat);
-- A track filter joins events by track; the delete checks and expense lists go by car and event.
CREATE INDEX ixEventsTrack ON tblEvents (lTrack_id);
CREATE INDEX ixExpensesCar ON tblExpenses (lCar_id);
CREATE INDEX ixExpensesEvent ON tblExpenses (lEvent_id);
-- Every saved run counts up the open items of its car.
CREATE INDEX ixMaintenanceCar ON tblMaintenance (lCar_id);

-- How the columns of an imported file were matched to run fields, one row per layout of a file's
-- first row, so a file of the same layout is matched the same way the next time.
CREATE TABLE tblImportLayout (
    lImportLayout_id COUNTER CONSTRAINT PrimaryKey PRIMARY KEY,
    sLayout_key      Memo,
    sMapping_tx      Memo,
    dtUsed_dt        DateTime
);

CREATE UNIQUE INDEX ixImportLayoutKey ON tblImportLayout (sLayout_key);

-- Every reading the weather window worked out, from the station or typed, by its date and time.
-- The run window looks up the reading nearest a run's time, so the time is indexed.
CREATE TABLE tblWeatherLog (
    lWeatherLog_id          COUNTER CONSTRAINT PrimaryKey PRIMARY KEY,
    dtReading_dt            DateTime,
    iTemp_val               Number,
    iHumidity_val           Number,
    iBarometricPressure_val Number,
    iPressureAltitude_val   Number,
    iCorrFactor_val         Number,
    iDensityAlt_val         Number,
    iAirDensity_val         Number,
    iVaporPressure_val      Number,
    iDewPoint_val           Number,
    iDryBarometer_val       Number,
    iWetBulbTemp_val        Number,
    sSource_nm              Text(10)
);

CREATE INDEX ixWeatherLogTime ON tblWeatherLog (dtReading_dt);
