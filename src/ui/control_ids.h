#pragma once

namespace kelvane::id {

/// Ids of the controls, under the controls' names; an array's id is that of its first element.
/// A program outside finds a control by them (`GetDlgItem`).
enum ControlId : int {
  None = 0,

  // MAin
  TabStrip = 1000,
  FrqFrame = 1001,
  FrqDotit = 1002,
  FrqFocus = 1003,
  FrqBfo = 1004,
  RxMask = 1005,
  SQ = 1006,
  SM = 1007,
  LChn = 1008,
  VChn = 1009,
  IChn = 1010,
  IBank = 1011,
  VBank = 1012,
  Band = 1013,
  RNG = 1014,
  FAlt = 1015,
  HFF = 1016,
  BMod = 1017,
  BFlt = 1018,
  FDif = 1019,
  DDESts = 1020,
  ConfigButton = 1021,
  UtcTime = 1022,
  Announced = 1023,
  Meter = 1024,
  RxWhy = 1025,
  FrqDigit = 1100,  // 0..8
  LockImg = 1110,   // 0..1
  GenEvent = 1120,  // 0..2
  ModEvent = 1130,  // 0..4
  IO = 1140,        // 0..3
  VStep = 1150,     // 0..1
  IStep = 1160,     // 0..1
  Opener = 1170,    // 0..8

  // MiniHelp
  HelpCard = 1190,
  HelpReport = 1191,

  // Config; cmdOK and cmdCancel are the system's own 1 and 2
  cmdOK = 1,
  cmdCancel = 2,
  All = 1200,
  WndOTop = 1201,
  WndBeep = 1202,
  WndMonR = 1203,
  FrqSetM = 1204,
  FrqSetF = 1205,
  SndTimR = 1206,
  DDEOAct = 1207,
  DDESrvNam = 1208,
  DDEServer = 1209,  // the label before it
  Panel = 1210,      // 0..2
  WndNewR = 1215,
  Colours = 1216,
  ColoursLabel = 1217,
  ConfigFrames = 1220,  // "Windows", "when Manually tuned", "Other"

  WndPlace = 1230,
  WndPlaceLabel = 1231,

  // Channel
  MemGrd = 1300,
  ChnGetIt = 1301,
  ChnSave = 1302,
  ChnReload = 1303,
  ChnExport = 1304,
  ChnImport = 1305,
  ChnClear = 1306,
  ChnCancel = 1307,
  ChnStatus = 1308,

  // Overview
  AllRow = 1500,  // 0..7
  AllOnTop = 1510,
  AllTakeBack = 1511,

  // Traces
  TracePlot = 1550,
  TraceReceiver = 1551,  // 0..7
  TraceLonger = 1560,
  TraceShorter = 1561,
  TracePause = 1562,
  TraceBack = 1563,
  TraceOn = 1564,
  TraceScale = 1565,
  TracePeak = 1566,
  TraceMean = 1567,
  TraceReference = 1568,
  TraceCompared = 1569,
  TraceCopy = 1570,
  TraceCsv = 1571,
  TracePng = 1572,
  TraceRecord = 1573,
  TraceResults = 1574,
  TraceOffsetLess = 1575,
  TraceOffsetMore = 1576,

  // DataLog; OK is the system's own 1
  PadOK = 1,
  PadGrd = 1400,
  PadNotice = 1401,
  PadCopy = 1402,
  PadInsert = 1403,
  PadDelete = 1404,
  PadExport = 1405,
  PadCancel = 1406,
  PadImport = 1407,

  // what an import into the log would do; Take in and Cancel are the system's own 1 and 2
  LogImpGrd = 1410,
  LogImpWords = 1411,
  LogImpTimes = 1412,
  LogImpLabel = 1413,

  // My stations; Tune and Close are the system's own 1 and 2
  StnGrd = 1450,
  StnStatus = 1451,
  StnSearch = 1452,
  StnGroup = 1453,
  StnFavourites = 1454,
  StnTake = 1455,
  StnAdd = 1456,
  StnRemove = 1457,
  StnUndo = 1458,
  StnRedo = 1459,
  StnImport = 1460,
  StnExport = 1461,
  StnFormat = 1462,
  StnLabel = 1463,

  // what an import would do; Take in and Cancel are the system's own 1 and 2
  ImpGrd = 1470,
  ImpWords = 1471,
  ImpRule = 1472,
  ImpDelimiter = 1473,
  ImpUnit = 1474,
  ImpColumn = 1475,
  ImpMeaning = 1476,
  ImpLabel = 1477,
};

}  // namespace kelvane::id
