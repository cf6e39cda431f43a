#include "zanmsg.h"

#include <cstring>

namespace {

struct Entry {
  const char* key;
  const char* text;
};

// English texts of every key the file manager shows.
constexpr Entry kMessages[] = {
    {"MSG_COMMON_ALBUM", "Album"},
    {"MSG_COMMON_CANCEL", "Cancel"},
    {"MSG_COMMON_COMPLETE", "Complete."},
    {"MSG_COMMON_COPY", "Copy"},
    {"MSG_COMMON_DELETE", "Delete"},
    {"MSG_COMMON_DOWNLOAD", "Download"},
    {"MSG_COMMON_ERROR", "Error"},
    {"MSG_COMMON_OK", "OK"},
    {"MSG_COMMON_PLAYLIST", "Playlist"},
    {"MSG_COMMON_RECORD", "Record"},
    {"MSG_COMMON_RENAME", "Rename"},
    {"MSG_FILEMAN_ADDING_PLAYLIST", "Adding to the playlist..."},
    {"MSG_FILEMAN_CANCELING", "Canceling..."},
    {"MSG_FILEMAN_CANNOT_EXECUTE_ERROR", "Cannot execute."},
    {"MSG_FILEMAN_CANNOT_EXECUTE_LIMIT_ALBUMS", "Cannot execute. The maximum number of albums has been reached."},
    {"MSG_FILEMAN_CANNOT_EXECUTE_LIMIT_PLAYLISTS", "Cannot execute. The maximum number of playlists has been reached."},
    {"MSG_FILEMAN_CANNOT_EXECUTE_LIMIT_SONGS_4999", "Cannot execute. The maximum of 4999 songs has been reached."},
    {"MSG_FILEMAN_CANNOT_EXECUTE_LIMIT_SONGS_999", "Cannot execute. An album can hold at most 999 songs."},
    {"MSG_FILEMAN_CANNOT_EXECUTE_NO_DATA", "Cannot execute. There is no data."},
    {"MSG_FILEMAN_CANNOT_EXECUTE_USB_SONGS_NOT_ADDED", "Cannot execute. Songs on the USB storage have not been added."},
    {"MSG_FILEMAN_CHANGE_ORDER", "Change Order"},
    {"MSG_FILEMAN_CHANGING", "Changing..."},
    {"MSG_FILEMAN_COPYING", "Copying..."},
    {"MSG_FILEMAN_CREATING", "Creating..."},
    {"MSG_FILEMAN_DB_CONNECTION_FAIL", "Cannot open the song database."},
    {"MSG_FILEMAN_DB_FIXING", "Repairing the song database..."},
    {"MSG_FILEMAN_DELETING", "Deleting..."},
    {"MSG_FILEMAN_FAIL_RENAME", "Renaming failed."},
    {"MSG_FILEMAN_FAIL_SORT", "Sorting failed."},
    {"MSG_FILEMAN_FILE_COPY_CANCELED", "Copying was canceled."},
    {"MSG_FILEMAN_FILE_DELETE_ERROR", "The file could not be deleted."},
    {"MSG_FILEMAN_FILE_DOESNT_EXIST", "The file does not exist."},
    {"MSG_FILEMAN_FORMATTING", "Formatting..."},
    {"MSG_FILEMAN_INSUFFICIENT_USB", "Not enough space on the USB storage."},
    {"MSG_FILEMAN_INSUFFICIENT_USB_AVAILABLE", "Not enough free space."},
    {"MSG_FILEMAN_MOVING", "Moving..."},
    {"MSG_FILEMAN_NO_ALBUM", "There is no album."},
    {"MSG_FILEMAN_NO_DIR", "The folder does not exist."},
    {"MSG_FILEMAN_REFRESHING", "Refreshing..."},
    {"MSG_FILEMAN_REGISTERING", "Registering..."},
    {"MSG_FILEMAN_RENAMING", "Renaming..."},
    {"MSG_FILEMAN_RESTORE_IN_PROGRESS", "Restoring..."},
    {"MSG_FILEMAN_SCANNING1", "Scanning..."},
    {"MSG_FILEMAN_SCANNING2", "Scanning songs..."},
    {"MSG_FILEMAN_SCANNING3", "Scanning albums..."},
    {"MSG_FILEMAN_SCANNING_USB", "Scanning the USB storage..."},
    {"MSG_FILEMAN_SEARCHING", "Searching..."},
    {"MSG_FILEMAN_STRIP_XP", "Strip Expression"},
    {"MSG_FILEMAN_UNREGISTERING", "Unregistering..."},
    {"MSG_FILEMAN_USB_SONGS_NOT_ADDED", "Adding songs..."},
    {"MSG_FILEMAN_USB_WRITE_PROTECTED", "The USB storage is write-protected."},
};

}  // namespace

extern "C" const char* msg_getXmlMsg(const char* key) {
  if (key == nullptr) return "";
  if (key[0] == '\0') return "";
  for (const Entry& e : kMessages) {
    if (std::strcmp(e.key, key) == 0) return e.text;
  }
  return key;
}
