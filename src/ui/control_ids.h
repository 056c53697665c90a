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
  Opener = 1170,    // 0..7

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
  DDEServer = 1209,     // the label before it
  Panel = 1210,         // 0..2
  WndNewR = 1215,
  Colours = 1216,
  ColoursLabel = 1217,
  ConfigFrames = 1220,  // "Windows", "when Manually tuned", "Other"

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
  PadGrd = 1400,
  PadNotice = 1401,
  PadCopy = 1402,
  PadInsert = 1403,
  PadDelete = 1404,
  PadExport = 1405,
  PadCancel = 1406,
};

}  // namespace kelvane::id
