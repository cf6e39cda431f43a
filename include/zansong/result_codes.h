// Result codes, and the rows of the message table they name.
//
// An operation returns 0 for success or -n for a failure, where n is the
// row of the message table that explains it, so that the host can show the
// message at once: PrintErrorMessage(label, code) prints the box of row
// -code.  The rows are numbered here once; each message-backed result code
// is its negated row.  The functions keep returning int.
//
// Also here: the label rows (box titles) and buttons of the message boxes,
// the few codes that are no message rows (the directory scan's results and
// the -1 of FH_rename and FH_reorder), and the zero of success.
#ifndef ZANSONG_RESULT_CODES_H_
#define ZANSONG_RESULT_CODES_H_

// ---- Message rows (PrintXmlMessageBox, PrintRemoconMessage) ----

constexpr int kMsgComplete = 0;
constexpr int kMsgCopying = 1;
constexpr int kMsgDeleting = 2;
constexpr int kMsgRefreshing = 3;
constexpr int kMsgRegistering = 4;
constexpr int kMsgUnregistering = 5;
constexpr int kMsgFormatting = 6;
constexpr int kMsgScanningUsb = 7;
constexpr int kMsgDbFixing = 8;
constexpr int kMsgScanning1 = 9;  // registration's notice to the remote control
constexpr int kMsgScanning2 = 10;
constexpr int kMsgScanning3 = 11;  // ... once its albums are done
constexpr int kMsgRestoreInProgress = 12;
constexpr int kMsgInsufficientUsb = 13;
constexpr int kMsgUsbWriteProtected = 14;
constexpr int kMsgUsbSongsNotAdded = 15;  // also the text of adding to a playlist
constexpr int kMsgSearching = 16;
constexpr int kMsgAddingPlaylist = 17;
constexpr int kMsgCreating = 18;
constexpr int kMsgRenaming = 19;
constexpr int kMsgMoving = 20;
constexpr int kMsgChanging = 21;
constexpr int kMsgCancel = 22;
constexpr int kMsgCanceling = 23;
constexpr int kMsgFileDoesntExist = 24;
constexpr int kMsgNoData = 25;
constexpr int kMsgDbConnectionFail = 26;
constexpr int kMsgLimitSongs999 = 27;
constexpr int kMsgInsufficientSpace = 28;
constexpr int kMsgCannotExecute = 29;
constexpr int kMsgLimitAlbums = 30;
constexpr int kMsgCopyCanceled = 31;
constexpr int kMsgLimitSongs4999 = 32;
constexpr int kMsgNoAlbum = 33;
constexpr int kMsgFileDeleteError = 34;
constexpr int kMsgNoDir = 35;
constexpr int kMsgLimitPlaylists = 36;
constexpr int kMsgUsbSongsNotAddedError = 37;
constexpr int kMsgFailSort = 38;
constexpr int kMsgFailRename = 39;
constexpr int kMsgEmpty = 40;  // the empty message
constexpr int kMsgRowCount = 41;

// ---- Labels (box titles) and buttons ----

constexpr int kLabelNone = 0;
constexpr int kLabelCopy = 1;
constexpr int kLabelDelete = 2;
constexpr int kLabelPlaylist = 3;
constexpr int kLabelChangeOrder = 4;
constexpr int kLabelRename = 5;
constexpr int kLabelDownload = 6;
constexpr int kLabelStripXp = 7;
constexpr int kLabelAlbum = 8;
constexpr int kLabelRecord = 9;
constexpr int kLabelError = 10;  // shown for rows 14, 27, 30, 32 and 36 whatever label is asked

constexpr int kButtonNone = 0;
constexpr int kButtonOk = 1;
constexpr int kButtonCancel = 2;

// ---- Result codes of the operations ----

constexpr int kResultOk = 0;
// Write-protected storage, or a file step that failed.
constexpr int kResultWriteProtected = -kMsgUsbWriteProtected;  // -14
// The file does not exist, or there is nothing to do.
constexpr int kResultNoFile = -kMsgFileDoesntExist;  // -24
constexpr int kResultNoData = -kMsgNoData;           // -25
// The catalogue cannot be opened.
constexpr int kResultDbFail = -kMsgDbConnectionFail;  // -26
// The album or playlist is full (999 songs).
constexpr int kResultAlbumFull = -kMsgLimitSongs999;  // -27
// Not enough free space.
constexpr int kResultNoSpace = -kMsgInsufficientSpace;    // -28
constexpr int kResultCannotExecute = -kMsgCannotExecute;  // -29
// The prefix holds the most albums (499).
constexpr int kResultAlbumLimit = -kMsgLimitAlbums;      // -30
constexpr int kResultCopyCancelled = -kMsgCopyCanceled;  // -31
// The prefix is full (4999 songs).
constexpr int kResultPrefixFull = -kMsgLimitSongs4999;    // -32
constexpr int kResultDeleteError = -kMsgFileDeleteError;  // -34
// The most playlists (499).
constexpr int kResultPlaylistLimit = -kMsgLimitPlaylists;  // -36
// The display order or a directory could not be repaired.
constexpr int kResultRepairFailed = -kMsgEmpty;  // -40

// ---- Codes that are no message rows ----

// FH_rename and FH_reorder: the catalogue cannot be opened (where the other
// operations return kResultDbFail).
constexpr int kResultRenameDbFail = -1;

// Results of the directory scans (GetDirFileList3, GetDirFileList4), which
// registration passes on.
constexpr int kScanOk = 0;
// A directory cannot be opened (at any depth: the whole scan stops).
constexpr int kScanUnreadableDir = -1;
// Too many album directories or album songs; from registration also a
// cancel, or a catalogue whose album list cannot be read.
constexpr int kScanStopped = -2;
// Too many songs directly in one directory.
constexpr int kScanTooManyLooseSongs = -3;

#endif  // ZANSONG_RESULT_CODES_H_
