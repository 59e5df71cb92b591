-- The catalogue of the run grid: one row for each column of tblRuns, under the list 'ID_Runs',
-- in tblRuns' column order. lOrder gives the default order (summary, slip, weather, tune-up,
-- segment times, notes, custom fields); lRun_id is the grid's hidden key and is not offered.
--
-- Ids that code names keep their meaning and must not move:
--   67, 70, 71, 83, 84  run #, date, time, correction factor, density altitude: with the ET
--                       (190 for the quarter mile, 187 for the eighth) and the four throttle
--                       stops the fixed columns of the set-up windows
--   73                  Full Run, at lOrder 65
--   76, 185, 187, 189, 190   60', 330', 1/8, 1000' and 1/4 ETs, "###,##0.000"
--   180, 184, 186, 188, 191  dial-in, R/T, vehicle R/T, margin and delay box, "###,##0.000"
--   181, 195, 196, 197  throttle stops 1 to 4, and 182 the quarter-mile speed, "###,##0.00"
--   198                 launch RPM, the column an old throttle-stop view held as 196
--   201-204, 211-216    the segment times and the custom fields, as the upgrade seeds them
--   8675309             the set-up windows' type column
-- Every one of these carries a format already, so the format repairs run at each start change
-- nothing.
--
-- Text and lookup columns have an empty format: the grid shows their value as it stands. The
-- four keys show the name of the row they point at.

INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (64, 0, 'ID_Runs', 'Run Id', 'lRun_id', '', 'Number', 'R', 500, False, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (65, 40, 'ID_Runs', 'Event', 'lEvent_id', '', 'Text', 'L', 2000, True, True, 'tblEvents', 'sEvent_nm');
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (66, 45, 'ID_Runs', 'Car', 'lCar_id', '', 'Text', 'L', 1500, True, True, 'tblCars', 'sCar_nm');
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (67, 30, 'ID_Runs', 'Run #', 'lRun_num', '', 'Number', 'R', 600, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (70, 10, 'ID_Runs', 'Date', 'dtRun_dt', 'mm/dd/yyyy', 'Date', 'R', 1100, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (71, 20, 'ID_Runs', 'Time', 'dtRun_tm', 'hh:mm AMPM', 'Time', 'R', 1000, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (72, 60, 'ID_Runs', 'Opponent', 'lOpponent_id', '', 'Text', 'L', 1500, True, True, 'tblOpponent', 'sOpponent_nm');
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (73, 65, 'ID_Runs', 'Full Run', 'bFullRun_fl', '', 'Boolean', 'C', 700, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (74, 50, 'ID_Runs', 'Run Type', 'lRunType_id', '', 'Text', 'L', 1300, True, True, 'tblRunType', 'sRunType_nm');
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (75, 75, 'ID_Runs', 'Points', 'lPoints_val', '###,###,##0', 'Number', 'R', 700, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (186, 180, 'ID_Runs', 'VRT', 'iVehicleReactionTime_val', '###,##0.000', 'Number', 'R', 700, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (77, 310, 'ID_Runs', 'Exhaust Temp', 'iExhaustTemp_val', '###,##0', 'Number', 'R', 900, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (78, 320, 'ID_Runs', 'Log File', 'sLogFile_nm', '', 'Text', 'L', 1500, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (79, 200, 'ID_Runs', 'Temp', 'iTemp_val', '###,##0.0', 'Number', 'R', 700, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (80, 210, 'ID_Runs', 'Humidity', 'iHumidity_val', '##0', 'Number', 'R', 800, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (81, 220, 'ID_Runs', 'Baro', 'iBarometricPressure_val', '###,##0.00', 'Number', 'R', 700, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (82, 230, 'ID_Runs', 'Pressure Alt', 'iPressureAltitude_val', '###,##0', 'Number', 'R', 1000, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (83, 240, 'ID_Runs', 'Corr Factor', 'iCorrFactor_val', '###,##0.0000', 'Number', 'R', 1000, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (84, 250, 'ID_Runs', 'Density Alt', 'iDensityAlt_val', '###,##0', 'Number', 'R', 1000, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (85, 260, 'ID_Runs', 'Air Density', 'iAirDensity_val', '###,##0.00', 'Number', 'R', 900, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (86, 270, 'ID_Runs', 'Vapor Pressure', 'iVaporPressure_val', '###,##0.000', 'Number', 'R', 1100, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (87, 280, 'ID_Runs', 'Dew Point', 'iDewPoint_val', '###,##0', 'Number', 'R', 800, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (88, 290, 'ID_Runs', 'Dry Baro', 'iDryBarometer_val', '###,##0.00', 'Number', 'R', 800, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (89, 300, 'ID_Runs', 'Wet Bulb', 'iWetBulbTemp_val', '##0.0', 'Number', 'R', 800, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (90, 500, 'ID_Runs', 'Engine', 'sEngine_desc', '', 'Text', 'L', 2000, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (91, 505, 'ID_Runs', 'Intake Lash', 'sValveLash_val', '', 'Text', 'L', 1000, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (92, 510, 'ID_Runs', 'Exhaust Lash', 'sExhaustValveLash_val', '', 'Text', 'L', 1000, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (93, 515, 'ID_Runs', 'Timing', 'sTiming_val', '', 'Text', 'L', 1000, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (94, 520, 'ID_Runs', 'Spark Plugs', 'sSparkPlugs_val', '', 'Text', 'L', 1000, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (95, 525, 'ID_Runs', 'Plug Gap', 'sPlugGap_val', '', 'Text', 'L', 1000, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (96, 530, 'ID_Runs', 'Cam Advance', 'sCamAdvance_val', '', 'Text', 'L', 1000, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (97, 535, 'ID_Runs', 'Blower Overdrive', 'sBlowerOverdrive_val', '', 'Text', 'L', 1200, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (98, 540, 'ID_Runs', 'Jet 1', 'sJet1_val', '', 'Text', 'L', 1000, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (99, 545, 'ID_Runs', 'Jet 2', 'sJet2_val', '', 'Text', 'L', 1000, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (100, 550, 'ID_Runs', 'Jet 3', 'sJet3_val', '', 'Text', 'L', 1000, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (101, 555, 'ID_Runs', 'Jet 4', 'sJet4_val', '', 'Text', 'L', 1000, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (102, 560, 'ID_Runs', 'Jet 5', 'sJet5_val', '', 'Text', 'L', 1000, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (103, 565, 'ID_Runs', 'Jet 6', 'sJet6_val', '', 'Text', 'L', 1000, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (104, 570, 'ID_Runs', 'Jet 7', 'sJet7_val', '', 'Text', 'L', 1000, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (105, 575, 'ID_Runs', 'Jet 8', 'sJet8_val', '', 'Text', 'L', 1000, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (106, 580, 'ID_Runs', 'Carburetor', 'sCarburetor_val', '', 'Text', 'L', 1000, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (107, 585, 'ID_Runs', 'Squirter 1', 'sSquirters1_val', '', 'Text', 'L', 1000, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (108, 590, 'ID_Runs', 'Squirter 2', 'sSquirters2_val', '', 'Text', 'L', 1000, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (109, 595, 'ID_Runs', 'Squirter 3', 'sSquirters3_val', '', 'Text', 'L', 1000, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (110, 600, 'ID_Runs', 'Squirter 4', 'sSquirters4_val', '', 'Text', 'L', 1000, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (111, 605, 'ID_Runs', 'Power Valve 1', 'sPowerValves1_val', '', 'Text', 'L', 1000, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (112, 610, 'ID_Runs', 'Power Valve 2', 'sPowerValves2_val', '', 'Text', 'L', 1000, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (113, 615, 'ID_Runs', 'Power Valve 3', 'sPowerValves3_val', '', 'Text', 'L', 1000, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (114, 620, 'ID_Runs', 'Power Valve 4', 'sPowerValves4_val', '', 'Text', 'L', 1000, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (115, 625, 'ID_Runs', 'Base A/F Ratio', 'sBaseADR', '', 'Text', 'L', 1000, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (116, 630, 'ID_Runs', 'Base Jet', 'sBaseJet', '', 'Text', 'L', 1000, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (117, 635, 'ID_Runs', 'Base Jet Dia', 'sBaseJetDiameter', '', 'Text', 'L', 1000, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (118, 640, 'ID_Runs', 'Base Bypass Pill', 'sBaseBypassPill', '', 'Text', 'L', 1000, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (119, 645, 'ID_Runs', 'Base Boost', 'sBaseBoost', '', 'Text', 'L', 1000, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (120, 650, 'ID_Runs', 'Nozzle Area', 'sNozzleArea', '', 'Text', 'L', 1000, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (121, 655, 'ID_Runs', 'Hat Nozzle 1', 'sHatNozzle1_val', '', 'Text', 'L', 900, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (122, 660, 'ID_Runs', 'Hat Nozzle 2', 'sHatNozzle2_val', '', 'Text', 'L', 900, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (123, 665, 'ID_Runs', 'Hat Nozzle 3', 'sHatNozzle3_val', '', 'Text', 'L', 900, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (124, 670, 'ID_Runs', 'Hat Nozzle 4', 'sHatNozzle4_val', '', 'Text', 'L', 900, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (125, 675, 'ID_Runs', 'Hat Nozzle 5', 'sHatNozzle5_val', '', 'Text', 'L', 900, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (126, 680, 'ID_Runs', 'Hat Nozzle 6', 'sHatNozzle6_val', '', 'Text', 'L', 900, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (127, 685, 'ID_Runs', 'Hat Nozzle 7', 'sHatNozzle7_val', '', 'Text', 'L', 900, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (128, 690, 'ID_Runs', 'Hat Nozzle 8', 'sHatNozzle8_val', '', 'Text', 'L', 900, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (129, 695, 'ID_Runs', 'Manifold Nozzle 1', 'sManifoldNozzle1_val', '', 'Text', 'L', 1200, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (130, 700, 'ID_Runs', 'Manifold Nozzle 2', 'sManifoldNozzle2_val', '', 'Text', 'L', 900, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (131, 705, 'ID_Runs', 'Manifold Nozzle 3', 'sManifoldNozzle3_val', '', 'Text', 'L', 900, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (132, 710, 'ID_Runs', 'Manifold Nozzle 4', 'sManifoldNozzle4_val', '', 'Text', 'L', 900, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (133, 715, 'ID_Runs', 'Manifold Nozzle 5', 'sManifoldNozzle5_val', '', 'Text', 'L', 900, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (134, 720, 'ID_Runs', 'Manifold Nozzle 6', 'sManifoldNozzle6_val', '', 'Text', 'L', 900, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (135, 725, 'ID_Runs', 'Manifold Nozzle 7', 'sManifoldNozzle7_val', '', 'Text', 'L', 900, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (136, 730, 'ID_Runs', 'Manifold Nozzle 8', 'sManifoldNozzle8_val', '', 'Text', 'L', 900, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (137, 735, 'ID_Runs', 'Blower Nozzle 1', 'sBlowerNozzle1_val', '', 'Text', 'L', 900, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (138, 740, 'ID_Runs', 'Blower Nozzle 2', 'sBlowerNozzle2_val', '', 'Text', 'L', 900, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (139, 745, 'ID_Runs', 'Blower Nozzle 3', 'sBlowerNozzle3_val', '', 'Text', 'L', 900, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (140, 750, 'ID_Runs', 'Blower Nozzle 4', 'sBlowerNozzle4_val', '', 'Text', 'L', 900, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (141, 755, 'ID_Runs', 'Blower Nozzle 5', 'sBlowerNozzle5_val', '', 'Text', 'L', 900, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (142, 760, 'ID_Runs', 'Blower Nozzle 6', 'sBlowerNozzle6_val', '', 'Text', 'L', 900, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (143, 765, 'ID_Runs', 'Blower Nozzle 7', 'sBlowerNozzle7_val', '', 'Text', 'L', 900, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (144, 770, 'ID_Runs', 'Blower Nozzle 8', 'sBlowerNozzle8_val', '', 'Text', 'L', 900, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (145, 775, 'ID_Runs', 'Head Nozzle 1', 'sHeadNozzle1_val', '', 'Text', 'L', 900, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (146, 780, 'ID_Runs', 'Head Nozzle 2', 'sHeadNozzle2_val', '', 'Text', 'L', 900, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (147, 785, 'ID_Runs', 'Head Nozzle 3', 'sHeadNozzle3_val', '', 'Text', 'L', 900, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (148, 790, 'ID_Runs', 'Head Nozzle 4', 'sHeadNozzle4_val', '', 'Text', 'L', 900, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (149, 795, 'ID_Runs', 'Head Nozzle 5', 'sHeadNozzle5_val', '', 'Text', 'L', 900, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (150, 800, 'ID_Runs', 'Head Nozzle 6', 'sHeadNozzle6_val', '', 'Text', 'L', 900, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (151, 805, 'ID_Runs', 'Head Nozzle 7', 'sHeadNozzle7_val', '', 'Text', 'L', 900, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (152, 810, 'ID_Runs', 'Head Nozzle 8', 'sHeadNozzle8_val', '', 'Text', 'L', 900, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (153, 815, 'ID_Runs', 'Pump Loop', 'sMainBPJet_val', '', 'Text', 'L', 1000, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (154, 820, 'ID_Runs', 'Hi-Speed BP', 'sHiSpeedBPJet_val', '', 'Text', 'L', 1000, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (155, 825, 'ID_Runs', 'Hi-Speed Setting', 'sHiSpeedSettingBPJet_val', '', 'Text', 'L', 1200, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (156, 830, 'ID_Runs', 'Other BP', 'sOtherBPJet_val', '', 'Text', 'L', 1000, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (157, 835, 'ID_Runs', 'Other Setting', 'sOtherSettingBPJet_val', '', 'Text', 'L', 1000, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (158, 840, 'ID_Runs', 'Nitro %', 'sNitro_val', '', 'Text', 'L', 1000, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (159, 845, 'ID_Runs', 'Trans 1', 'sTrans1_val', '', 'Text', 'L', 1000, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (160, 850, 'ID_Runs', 'Trans 2', 'sTrans2_val', '', 'Text', 'L', 1000, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (161, 855, 'ID_Runs', 'Trans 3', 'sTrans3_val', '', 'Text', 'L', 1000, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (162, 860, 'ID_Runs', 'Trans 4', 'sTrans4_val', '', 'Text', 'L', 1000, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (163, 865, 'ID_Runs', 'Trans 5', 'sTrans5_val', '', 'Text', 'L', 1000, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (164, 870, 'ID_Runs', 'Converter', 'sConverter_val', '', 'Text', 'L', 1000, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (165, 875, 'ID_Runs', 'Ring & Pinion', 'sRingPinion_val', '', 'Text', 'L', 1000, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (166, 880, 'ID_Runs', 'Spring Pressure', 'sSpringPressure_val', '', 'Text', 'L', 1000, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (167, 885, 'ID_Runs', 'Counter Weight', 'sCounterWeight_val', '', 'Text', 'L', 1000, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (168, 890, 'ID_Runs', 'Front End Travel', 'sFrontEndTravel_val', '', 'Text', 'L', 1000, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (169, 895, 'ID_Runs', 'Wheelie Bar', 'sWheelieBarHeight_val', '', 'Text', 'L', 1000, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (170, 900, 'ID_Runs', 'Slicks', 'sSlicks_val', '', 'Text', 'L', 1000, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (171, 905, 'ID_Runs', 'Susp. Bar Location', 'sSuspensionBarLocations_val', '', 'Text', 'L', 1200, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (172, 910, 'ID_Runs', 'Tire Pressure', 'sTirePressure_val', '', 'Text', 'L', 1000, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (198, 400, 'ID_Runs', 'Launch RPM', 'sLaunchRPM_val', '', 'Text', 'L', 1000, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (173, 410, 'ID_Runs', 'Shift RPM', 'sShiftRPM_val', '', 'Text', 'L', 1000, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (191, 420, 'ID_Runs', 'Delay Box', 'sDelayBox_val', '###,##0.000', 'Number', 'R', 900, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (181, 430, 'ID_Runs', 'Throttle Stop 1', 'sThrottleStop1_val', '###,##0.00', 'Number', 'R', 1200, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (195, 440, 'ID_Runs', 'Throttle Stop 2', 'sThrottleStop2_val', '###,##0.00', 'Number', 'R', 1200, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (196, 450, 'ID_Runs', 'Throttle Stop 3', 'sThrottleStop3_val', '###,##0.00', 'Number', 'R', 1200, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (197, 460, 'ID_Runs', 'Throttle Stop 4', 'sThrottleStop4_val', '###,##0.00', 'Number', 'R', 1200, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (180, 80, 'ID_Runs', 'Dial-In', 'iDialIn_val', '###,##0.000', 'Number', 'R', 800, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (174, 70, 'ID_Runs', 'Lane', 'sLane_nm', '', 'Text', 'L', 500, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (184, 90, 'ID_Runs', 'R/T', 'iReactionTime_val', '###,##0.000', 'Number', 'R', 700, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (76, 100, 'ID_Runs', "60' et", 'i60Foot_et', '###,##0.000', 'Number', 'R', 700, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (185, 110, 'ID_Runs', "330' et", 'i330Foot_et', '###,##0.000', 'Number', 'R', 800, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (187, 120, 'ID_Runs', '1/8 et', 'i18Mile_et', '###,##0.000', 'Number', 'R', 800, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (183, 130, 'ID_Runs', '1/8 mph', 'i18Mile_mph', '###,##0.00', 'Number', 'R', 800, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (189, 140, 'ID_Runs', "1000' et", 'i1000Foot_et', '###,##0.000', 'Number', 'R', 800, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (190, 150, 'ID_Runs', '1/4 et', 'i14Mile_et', '###,##0.000', 'Number', 'R', 800, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (182, 160, 'ID_Runs', '1/4 mph', 'i14Mile_mph', '###,##0.00', 'Number', 'R', 800, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (188, 170, 'ID_Runs', 'MoV ft', 'iMarginOfVictory_ft', '###,##0.000', 'Number', 'R', 800, True, False, Null, Null);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl, bLookup_fl, sLookupTable_nm, sLookupField_nm)
    VALUES (175, 1290, 'ID_Runs', 'Notes', 'sRunNotes_tx', '', 'Text', 'L', 3000, True, False, Null, Null);
-- The segment times and the custom fields, written as the upgrade step that introduced them
-- writes them, so a new logbook and an upgraded one hold the same rows.

INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl)
    VALUES (201, 1246, 'ID_Runs', "60-330' et", 'i60to330Foot_et', '###,##0.000', 'Number', 'R', 500, True);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl)
    VALUES (202, 1247, 'ID_Runs', "330-660' et", 'i330to660Foot_et', '###,##0.000', 'Number', 'R', 575, True);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl)
    VALUES (203, 1248, 'ID_Runs', "660-1000' et", 'i660to1000Foot_et', '###,##0.000', 'Number', 'R', 650, True);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl)
    VALUES (204, 1249, 'ID_Runs', "1000-1320' et", 'i1000to1320Foot_et', '###,##0.000', 'Number', 'R', 700, True);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl)
    VALUES (211, 1301, 'ID_Runs', 'Custom1', 'Custom1', '', 'Text', 'L', 1500, True);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl)
    VALUES (212, 1302, 'ID_Runs', 'Custom2', 'Custom2', '', 'Text', 'L', 1500, True);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl)
    VALUES (213, 1303, 'ID_Runs', 'Custom3', 'Custom3', '', 'Text', 'L', 1500, True);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl)
    VALUES (214, 1304, 'ID_Runs', 'Custom4', 'Custom4', '', 'Text', 'L', 1500, True);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl)
    VALUES (215, 1305, 'ID_Runs', 'Custom5', 'Custom5', '', 'Text', 'L', 1500, True);
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sColumnHeader, sFieldName, sDisplayFormat, sDataType, sAlignment, lColumnWidth, bVisible_fl)
    VALUES (216, 1306, 'ID_Runs', 'Custom6', 'Custom6', '', 'Text', 'L', 1500, True);
-- The type column of the set-up windows' grids, the only row of another list.
INSERT INTO tblListViewColumns (lLVC_id, lOrder, sView_id, sFieldName, sColumnHeader, sDataType, sAlignment, lColumnWidth, bVisible_fl)
    VALUES (8675309, 0, 'ID_CarSetup', 'sSetup_cat', 'Type', 'Text', 'L', 500, True);
