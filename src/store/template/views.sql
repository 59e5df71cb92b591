-- The four shipped views. Each row names a catalogue id and its place; the caption is a copy of
-- the catalogue's at the time of writing (the grid reads the catalogue's own). The segment times
-- and custom fields stand at the places the upgrade step gives them, so a new logbook and an
-- upgraded one show the same views.

-- Quarter mile: the time slip and the air, as most racers read it.
INSERT INTO tbl14MileView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (70, 10, 'ID_Runs', 'Date', True);
INSERT INTO tbl14MileView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (71, 20, 'ID_Runs', 'Time', True);
INSERT INTO tbl14MileView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (67, 30, 'ID_Runs', 'Run #', True);
INSERT INTO tbl14MileView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (65, 40, 'ID_Runs', 'Event', True);
INSERT INTO tbl14MileView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (74, 50, 'ID_Runs', 'Run Type', True);
INSERT INTO tbl14MileView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (72, 60, 'ID_Runs', 'Opponent', True);
INSERT INTO tbl14MileView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (174, 70, 'ID_Runs', 'Lane', True);
INSERT INTO tbl14MileView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (180, 80, 'ID_Runs', 'Dial-In', True);
INSERT INTO tbl14MileView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (184, 90, 'ID_Runs', 'R/T', True);
INSERT INTO tbl14MileView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (76, 100, 'ID_Runs', "60' et", True);
INSERT INTO tbl14MileView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (185, 110, 'ID_Runs', "330' et", True);
INSERT INTO tbl14MileView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (187, 120, 'ID_Runs', '1/8 et', True);
INSERT INTO tbl14MileView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (183, 130, 'ID_Runs', '1/8 mph', True);
INSERT INTO tbl14MileView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (189, 140, 'ID_Runs', "1000' et", True);
INSERT INTO tbl14MileView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (190, 145, 'ID_Runs', '1/4 et', True);
INSERT INTO tbl14MileView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (182, 150, 'ID_Runs', '1/4 mph', True);
INSERT INTO tbl14MileView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (201, 152, 'ID_Runs', "60-330' et", True);
INSERT INTO tbl14MileView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (202, 154, 'ID_Runs', "330-660' et", True);
INSERT INTO tbl14MileView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (203, 156, 'ID_Runs', "660-1000' et", True);
INSERT INTO tbl14MileView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (204, 158, 'ID_Runs', "1000-1320' et", True);
INSERT INTO tbl14MileView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (188, 160, 'ID_Runs', 'MoV ft', True);
INSERT INTO tbl14MileView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (79, 170, 'ID_Runs', 'Temp', True);
INSERT INTO tbl14MileView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (80, 180, 'ID_Runs', 'Humidity', True);
INSERT INTO tbl14MileView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (81, 190, 'ID_Runs', 'Baro', True);
INSERT INTO tbl14MileView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (83, 200, 'ID_Runs', 'Corr Factor', True);
INSERT INTO tbl14MileView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (84, 210, 'ID_Runs', 'Density Alt', True);
INSERT INTO tbl14MileView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (211, 911, 'ID_Runs', 'Custom1', True);
INSERT INTO tbl14MileView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (212, 912, 'ID_Runs', 'Custom2', True);
INSERT INTO tbl14MileView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (213, 913, 'ID_Runs', 'Custom3', True);
INSERT INTO tbl14MileView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (214, 914, 'ID_Runs', 'Custom4', True);
INSERT INTO tbl14MileView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (215, 915, 'ID_Runs', 'Custom5', True);
INSERT INTO tbl14MileView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (216, 916, 'ID_Runs', 'Custom6', True);

-- Eighth mile: the same without the back half of the track.
INSERT INTO tbl18MileView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (70, 10, 'ID_Runs', 'Date', True);
INSERT INTO tbl18MileView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (71, 20, 'ID_Runs', 'Time', True);
INSERT INTO tbl18MileView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (67, 30, 'ID_Runs', 'Run #', True);
INSERT INTO tbl18MileView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (65, 40, 'ID_Runs', 'Event', True);
INSERT INTO tbl18MileView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (74, 50, 'ID_Runs', 'Run Type', True);
INSERT INTO tbl18MileView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (72, 60, 'ID_Runs', 'Opponent', True);
INSERT INTO tbl18MileView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (174, 70, 'ID_Runs', 'Lane', True);
INSERT INTO tbl18MileView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (180, 80, 'ID_Runs', 'Dial-In', True);
INSERT INTO tbl18MileView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (184, 90, 'ID_Runs', 'R/T', True);
INSERT INTO tbl18MileView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (76, 100, 'ID_Runs', "60' et", True);
INSERT INTO tbl18MileView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (185, 110, 'ID_Runs', "330' et", True);
INSERT INTO tbl18MileView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (187, 115, 'ID_Runs', '1/8 et', True);
INSERT INTO tbl18MileView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (183, 120, 'ID_Runs', '1/8 mph', True);
INSERT INTO tbl18MileView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (201, 122, 'ID_Runs', "60-330' et", True);
INSERT INTO tbl18MileView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (202, 124, 'ID_Runs', "330-660' et", True);
INSERT INTO tbl18MileView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (188, 130, 'ID_Runs', 'MoV ft', True);
INSERT INTO tbl18MileView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (79, 140, 'ID_Runs', 'Temp', True);
INSERT INTO tbl18MileView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (80, 150, 'ID_Runs', 'Humidity', True);
INSERT INTO tbl18MileView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (81, 160, 'ID_Runs', 'Baro', True);
INSERT INTO tbl18MileView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (83, 170, 'ID_Runs', 'Corr Factor', True);
INSERT INTO tbl18MileView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (84, 180, 'ID_Runs', 'Density Alt', True);
INSERT INTO tbl18MileView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (211, 911, 'ID_Runs', 'Custom1', True);
INSERT INTO tbl18MileView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (212, 912, 'ID_Runs', 'Custom2', True);
INSERT INTO tbl18MileView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (213, 913, 'ID_Runs', 'Custom3', True);
INSERT INTO tbl18MileView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (214, 914, 'ID_Runs', 'Custom4', True);
INSERT INTO tbl18MileView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (215, 915, 'ID_Runs', 'Custom5', True);
INSERT INTO tbl18MileView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (216, 916, 'ID_Runs', 'Custom6', True);

-- Throttle stop: the launch settings and stop timers ahead of the slip.
INSERT INTO tblThrottleStopView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (70, 10, 'ID_Runs', 'Date', True);
INSERT INTO tblThrottleStopView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (71, 20, 'ID_Runs', 'Time', True);
INSERT INTO tblThrottleStopView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (67, 30, 'ID_Runs', 'Run #', True);
INSERT INTO tblThrottleStopView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (65, 32, 'ID_Runs', 'Event', True);
INSERT INTO tblThrottleStopView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (74, 34, 'ID_Runs', 'Run Type', True);
INSERT INTO tblThrottleStopView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (198, 36, 'ID_Runs', 'Launch RPM', True);
INSERT INTO tblThrottleStopView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (191, 38, 'ID_Runs', 'Delay Box', True);
INSERT INTO tblThrottleStopView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (181, 42, 'ID_Runs', 'Throttle Stop 1', True);
INSERT INTO tblThrottleStopView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (195, 44, 'ID_Runs', 'Throttle Stop 2', True);
INSERT INTO tblThrottleStopView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (196, 46, 'ID_Runs', 'Throttle Stop 3', True);
INSERT INTO tblThrottleStopView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (197, 48, 'ID_Runs', 'Throttle Stop 4', True);
INSERT INTO tblThrottleStopView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (180, 60, 'ID_Runs', 'Dial-In', True);
INSERT INTO tblThrottleStopView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (184, 70, 'ID_Runs', 'R/T', True);
INSERT INTO tblThrottleStopView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (76, 100, 'ID_Runs', "60' et", True);
INSERT INTO tblThrottleStopView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (185, 110, 'ID_Runs', "330' et", True);
INSERT INTO tblThrottleStopView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (187, 120, 'ID_Runs', '1/8 et', True);
INSERT INTO tblThrottleStopView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (183, 130, 'ID_Runs', '1/8 mph', True);
INSERT INTO tblThrottleStopView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (189, 140, 'ID_Runs', "1000' et", True);
INSERT INTO tblThrottleStopView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (190, 145, 'ID_Runs', '1/4 et', True);
INSERT INTO tblThrottleStopView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (182, 150, 'ID_Runs', '1/4 mph', True);
INSERT INTO tblThrottleStopView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (201, 152, 'ID_Runs', "60-330' et", True);
INSERT INTO tblThrottleStopView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (202, 154, 'ID_Runs', "330-660' et", True);
INSERT INTO tblThrottleStopView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (203, 156, 'ID_Runs', "660-1000' et", True);
INSERT INTO tblThrottleStopView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (204, 158, 'ID_Runs', "1000-1320' et", True);
INSERT INTO tblThrottleStopView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (79, 170, 'ID_Runs', 'Temp', True);
INSERT INTO tblThrottleStopView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (80, 180, 'ID_Runs', 'Humidity', True);
INSERT INTO tblThrottleStopView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (81, 190, 'ID_Runs', 'Baro', True);
INSERT INTO tblThrottleStopView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (83, 200, 'ID_Runs', 'Corr Factor', True);
INSERT INTO tblThrottleStopView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (84, 210, 'ID_Runs', 'Density Alt', True);
INSERT INTO tblThrottleStopView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (211, 911, 'ID_Runs', 'Custom1', True);
INSERT INTO tblThrottleStopView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (212, 912, 'ID_Runs', 'Custom2', True);
INSERT INTO tblThrottleStopView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (213, 913, 'ID_Runs', 'Custom3', True);
INSERT INTO tblThrottleStopView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (214, 914, 'ID_Runs', 'Custom4', True);
INSERT INTO tblThrottleStopView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (215, 915, 'ID_Runs', 'Custom5', True);
INSERT INTO tblThrottleStopView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (216, 916, 'ID_Runs', 'Custom6', True);

-- Pro: the slip, then the tune-up that made it.
INSERT INTO tblProView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (70, 10, 'ID_Runs', 'Date', True);
INSERT INTO tblProView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (71, 20, 'ID_Runs', 'Time', True);
INSERT INTO tblProView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (67, 30, 'ID_Runs', 'Run #', True);
INSERT INTO tblProView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (73, 35, 'ID_Runs', 'Full Run', True);
INSERT INTO tblProView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (65, 40, 'ID_Runs', 'Event', True);
INSERT INTO tblProView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (74, 50, 'ID_Runs', 'Run Type', True);
INSERT INTO tblProView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (72, 60, 'ID_Runs', 'Opponent', True);
INSERT INTO tblProView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (184, 70, 'ID_Runs', 'R/T', True);
INSERT INTO tblProView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (76, 80, 'ID_Runs', "60' et", True);
INSERT INTO tblProView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (185, 90, 'ID_Runs', "330' et", True);
INSERT INTO tblProView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (187, 100, 'ID_Runs', '1/8 et', True);
INSERT INTO tblProView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (183, 110, 'ID_Runs', '1/8 mph', True);
INSERT INTO tblProView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (189, 120, 'ID_Runs', "1000' et", True);
INSERT INTO tblProView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (190, 130, 'ID_Runs', '1/4 et', True);
INSERT INTO tblProView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (182, 140, 'ID_Runs', '1/4 mph', True);
INSERT INTO tblProView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (201, 142, 'ID_Runs', "60-330' et", True);
INSERT INTO tblProView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (202, 144, 'ID_Runs', "330-660' et", True);
INSERT INTO tblProView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (203, 146, 'ID_Runs', "660-1000' et", True);
INSERT INTO tblProView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (204, 148, 'ID_Runs', "1000-1320' et", True);
INSERT INTO tblProView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (83, 160, 'ID_Runs', 'Corr Factor', True);
INSERT INTO tblProView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (84, 170, 'ID_Runs', 'Density Alt', True);
INSERT INTO tblProView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (77, 180, 'ID_Runs', 'Exhaust Temp', True);
INSERT INTO tblProView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (93, 200, 'ID_Runs', 'Timing', True);
INSERT INTO tblProView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (97, 210, 'ID_Runs', 'Blower Overdrive', True);
INSERT INTO tblProView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (96, 220, 'ID_Runs', 'Cam Advance', True);
INSERT INTO tblProView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (94, 230, 'ID_Runs', 'Spark Plugs', True);
INSERT INTO tblProView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (158, 240, 'ID_Runs', 'Nitro %', True);
INSERT INTO tblProView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (153, 250, 'ID_Runs', 'Pump Loop', True);
INSERT INTO tblProView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (154, 260, 'ID_Runs', 'Hi-Speed BP', True);
INSERT INTO tblProView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (155, 270, 'ID_Runs', 'Hi-Speed Setting', True);
INSERT INTO tblProView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (198, 300, 'ID_Runs', 'Launch RPM', True);
INSERT INTO tblProView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (173, 310, 'ID_Runs', 'Shift RPM', True);
INSERT INTO tblProView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (164, 320, 'ID_Runs', 'Converter', True);
INSERT INTO tblProView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (165, 330, 'ID_Runs', 'Ring & Pinion', True);
INSERT INTO tblProView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (166, 340, 'ID_Runs', 'Spring Pressure', True);
INSERT INTO tblProView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (167, 350, 'ID_Runs', 'Counter Weight', True);
INSERT INTO tblProView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (172, 400, 'ID_Runs', 'Tire Pressure', True);
INSERT INTO tblProView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (169, 410, 'ID_Runs', 'Wheelie Bar', True);
INSERT INTO tblProView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (168, 420, 'ID_Runs', 'Front End Travel', True);
INSERT INTO tblProView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (211, 911, 'ID_Runs', 'Custom1', True);
INSERT INTO tblProView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (212, 912, 'ID_Runs', 'Custom2', True);
INSERT INTO tblProView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (213, 913, 'ID_Runs', 'Custom3', True);
INSERT INTO tblProView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (214, 914, 'ID_Runs', 'Custom4', True);
INSERT INTO tblProView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (215, 915, 'ID_Runs', 'Custom5', True);
INSERT INTO tblProView (lLVC_id, lOrder, sView_id, sColumnHeader, bVisible_fl) VALUES (216, 916, 'ID_Runs', 'Custom6', True);

-- The shipped views are read-only, so the user can neither replace nor delete them; the quarter
-- mile opens at the first start.
INSERT INTO tblViews (sView_desc, sTable_nm, bReadOnlyView_fl, bDefault_fl) VALUES ('Quarter Mile', 'tbl14MileView', True, True);
INSERT INTO tblViews (sView_desc, sTable_nm, bReadOnlyView_fl, bDefault_fl) VALUES ('Eighth Mile', 'tbl18MileView', True, False);
INSERT INTO tblViews (sView_desc, sTable_nm, bReadOnlyView_fl, bDefault_fl) VALUES ('Throttle Stop', 'tblThrottleStopView', True, False);
INSERT INTO tblViews (sView_desc, sTable_nm, bReadOnlyView_fl, bDefault_fl) VALUES ('Pro', 'tblProView', True, False);
