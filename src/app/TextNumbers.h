#pragma once
// The numbers of the texts that code asks for one by one. Captions of menus and dialogs are given
// by number where the controls are listed.

#include <cstdint>

namespace kalvrooms::TextNumber {

inline constexpr std::int32_t Title = 1;

// The columns of a room list.
inline constexpr std::int32_t Name = 20;
inline constexpr std::int32_t Function = 21;
inline constexpr std::int32_t Area = 22;
inline constexpr std::int32_t Story = 23;
inline constexpr std::int32_t Enclosure = 24;
inline constexpr std::int32_t Occupancy = 25;
inline constexpr std::int32_t AreaType = 26;
inline constexpr std::int32_t Geometry = 30;
inline constexpr std::int32_t Dx = 94;
inline constexpr std::int32_t Dy = 95;
inline constexpr std::int32_t RoomID = 96;

// The host's names of attributes; that of the enclosure is the column's.
inline constexpr std::int32_t HostOccupancy = 92;
inline constexpr std::int32_t HostAreaType = 93;

// The report's words for exactly one room, and for others.
inline constexpr std::int32_t OneRoomWas = 29;
inline constexpr std::int32_t RoomsWere = 57;
inline constexpr std::int32_t OneUpdated = 58;
inline constexpr std::int32_t OneAtPosition = 60;
inline constexpr std::int32_t OnePlaced = 62;

// Questions, warnings and refusals.
inline constexpr std::int32_t SaveChanges = 66;
inline constexpr std::int32_t RoomLimit = 67;
inline constexpr std::int32_t RoomLimitRest = 68;
inline constexpr std::int32_t StoryCodeMissing = 69;
inline constexpr std::int32_t NoKvdRooms = 70;
inline constexpr std::int32_t NoRooms = 71;
inline constexpr std::int32_t TooManyRooms = 72;
inline constexpr std::int32_t WorkbookNeedsApplication = 73;
inline constexpr std::int32_t DistancesTooSmall = 74;
inline constexpr std::int32_t CloseKvdFiles = 76;
inline constexpr std::int32_t NameCut = 77;
inline constexpr std::int32_t StoryCodeCut = 78;
inline constexpr std::int32_t FunctionCut = 79;
inline constexpr std::int32_t EndMenuAction = 80;

// Dialogs.
inline constexpr std::int32_t Options = 19;
inline constexpr std::int32_t Arrangement = 47;
inline constexpr std::int32_t Display = 53;
inline constexpr std::int32_t Hnf = 83;
inline constexpr std::int32_t NoEntry = 91;
inline constexpr std::int32_t AddRoom = 97;
inline constexpr std::int32_t ModifyRoom = 98;

// Words that a library may give and MessageText has in German (99 to 200).
inline constexpr std::int32_t RuntimeErrorTitle = 99;
// The first of the runtime's descriptions of errors, in the order of Messages.cpp.
inline constexpr std::int32_t FirstDescription = 100;

inline constexpr std::int32_t ListNotSaved = 120;
inline constexpr std::int32_t ListNotRead = 121;
inline constexpr std::int32_t ListNotReadWhole = 122;
inline constexpr std::int32_t FileLine = 123;
inline constexpr std::int32_t ReasonLine = 124;
inline constexpr std::int32_t RoomLine = 125;
inline constexpr std::int32_t OldFileIsThere = 126;
inline constexpr std::int32_t FileChanged = 127;
inline constexpr std::int32_t SpreadsheetIsBusy = 128;
inline constexpr std::int32_t RoomWithNegativeArea = 129;
inline constexpr std::int32_t NegativeArea = 130;

// What reading and writing the drawing tell.
inline constexpr std::int32_t RoomsReadInPart = 140;
inline constexpr std::int32_t NoProjectFolder = 141;
inline constexpr std::int32_t HostIsGone = 142;
inline constexpr std::int32_t ReadingGivenUp = 143;
inline constexpr std::int32_t ReadingEnded = 144;
inline constexpr std::int32_t WritingEnded = 145;
inline constexpr std::int32_t PlacingFailed = 146;
inline constexpr std::int32_t ReadingProgress = 147;
inline constexpr std::int32_t WritingProgress = 148;
inline constexpr std::int32_t DrawingNotRead = 149;

// Keys, as menus name them, and the reason for holding up the end of the session.
inline constexpr std::int32_t WithControl = 160;
inline constexpr std::int32_t WithControlAndShift = 161;
inline constexpr std::int32_t InsertKey = 162;
inline constexpr std::int32_t DeleteKey = 163;
inline constexpr std::int32_t EnterKey = 164;
inline constexpr std::int32_t UpKey = 165;
inline constexpr std::int32_t DownKey = 166;
inline constexpr std::int32_t UnsavedRooms = 167;

inline constexpr std::int32_t TooManyAtOnce = 180;
inline constexpr std::int32_t OutlinesNotStored = 181;

} // namespace kalvrooms::TextNumber
