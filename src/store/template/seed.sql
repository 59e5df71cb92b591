-- Starter rows, so that a first start has a car to select, an event to log runs under and the
-- usual names in its lists. The user renames or deletes them from the record windows.

-- Car 1 is the default car and the one the maintenance examples belong to. A new car from the
-- car window gets carburetion 'CARB' and fuel 'GAS' and no tune-up; this one starts the same way.
INSERT INTO tblCars (lCar_id, sCar_nm, sCar_num, sCarCarb_typ, sCarFuel_typ, sCarNotes_tx, iCarWeight_val, lCarryForward_info, bDefault_fl)
    VALUES (1, 'My Race Car', '1', 'CARB', 'GAS', '', 3000, True, True);

INSERT INTO tblTracks (lTrack_id, sTrack_nm, sTrackAddress_tx, sTrackContact_nm, sTrackPhone, sTrackInternet_url, sTrackDirections_tx, sTrackNotes_tx)
    VALUES (1, 'Home Track', '', '', '', '', '', '');

INSERT INTO tblEventClass (lEventClass_id, sEventClass_nm) VALUES (1, 'Bracket Race');
INSERT INTO tblEventClass (lEventClass_id, sEventClass_nm) VALUES (2, 'Points Race');
INSERT INTO tblEventClass (lEventClass_id, sEventClass_nm) VALUES (3, 'Test and Tune');
INSERT INTO tblEventClass (lEventClass_id, sEventClass_nm) VALUES (4, 'Match Race');
INSERT INTO tblEventClass (lEventClass_id, sEventClass_nm) VALUES (5, 'Championship');

INSERT INTO tblEvents (lEvent_id, sEvent_nm, lTrack_id, dtEventStart_dt, dtEventEnd_dt, lEventClass_id, cPurse_amt, sEventNotes_tx)
    VALUES (1, 'Test and Tune Day', 1, #04/05/2003#, #04/05/2003#, 3, 0, '');

-- The run window offers these in name order and starts a new run on the first.
INSERT INTO tblRunType (lRunType_id, sRunType_nm) VALUES (1, 'Time Trial');
INSERT INTO tblRunType (lRunType_id, sRunType_nm) VALUES (2, 'Qualifying');
INSERT INTO tblRunType (lRunType_id, sRunType_nm) VALUES (3, 'Eliminations');
INSERT INTO tblRunType (lRunType_id, sRunType_nm) VALUES (4, 'Test and Tune');

INSERT INTO tblOpponent (lOpponent_id, sOpponent_nm) VALUES (1, 'Solo Pass');
INSERT INTO tblOpponent (lOpponent_id, sOpponent_nm) VALUES (2, 'Bye Run');
INSERT INTO tblOpponent (lOpponent_id, sOpponent_nm) VALUES (3, 'Practice Partner');

INSERT INTO tblExpenseCategory (lExpenseCategory_id, sExpenseCategory_nm) VALUES (1, 'Fuel');
INSERT INTO tblExpenseCategory (lExpenseCategory_id, sExpenseCategory_nm) VALUES (2, 'Entry Fees');
INSERT INTO tblExpenseCategory (lExpenseCategory_id, sExpenseCategory_nm) VALUES (3, 'Parts');
INSERT INTO tblExpenseCategory (lExpenseCategory_id, sExpenseCategory_nm) VALUES (4, 'Tires');
INSERT INTO tblExpenseCategory (lExpenseCategory_id, sExpenseCategory_nm) VALUES (5, 'Travel');
INSERT INTO tblExpenseCategory (lExpenseCategory_id, sExpenseCategory_nm) VALUES (6, 'Lodging');
INSERT INTO tblExpenseCategory (lExpenseCategory_id, sExpenseCategory_nm) VALUES (7, 'Food');
INSERT INTO tblExpenseCategory (lExpenseCategory_id, sExpenseCategory_nm) VALUES (8, 'Tools');
INSERT INTO tblExpenseCategory (lExpenseCategory_id, sExpenseCategory_nm) VALUES (9, 'Repairs');
INSERT INTO tblExpenseCategory (lExpenseCategory_id, sExpenseCategory_nm) VALUES (10, 'Other');

-- The maintenance examples: one past due, one due now, one coming up, one far off and one done,
-- so that the maintenance window shows each of its states on first use.
INSERT INTO tblMaintenance (lMaintenance_id, lCar_id, bCompleted, iScheduledRuns, iRunsMade, dtMaintenance_dt, sMaintenanceNotes_tx)
    VALUES (1, 1, False, 20, 21, Null, 'Example Upcoming or Due Maintenance A');
INSERT INTO tblMaintenance (lMaintenance_id, lCar_id, bCompleted, iScheduledRuns, iRunsMade, dtMaintenance_dt, sMaintenanceNotes_tx)
    VALUES (2, 1, False, 20, 20, Null, 'Example Upcoming or Due Maintenance B');
INSERT INTO tblMaintenance (lMaintenance_id, lCar_id, bCompleted, iScheduledRuns, iRunsMade, dtMaintenance_dt, sMaintenanceNotes_tx)
    VALUES (3, 1, False, 20, 18, Null, 'Example Upcoming or Due Maintenance C');
INSERT INTO tblMaintenance (lMaintenance_id, lCar_id, bCompleted, iScheduledRuns, iRunsMade, dtMaintenance_dt, sMaintenanceNotes_tx)
    VALUES (4, 1, False, 20, 0, Null, 'Example Future Maintenance');
INSERT INTO tblMaintenance (lMaintenance_id, lCar_id, bCompleted, iScheduledRuns, iRunsMade, dtMaintenance_dt, sMaintenanceNotes_tx)
    VALUES (5, 1, True, 20, 19, #07/04/2003#, 'Example Completed Maintenance');
