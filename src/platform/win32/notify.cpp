// Change notification and waiting: the real Win32 API.
#include "platform/platform.h"

namespace kz::os {

HANDLE FindFirstChangeNotificationA(const char* directory, BOOL subtree, DWORD filter) {
  return ::FindFirstChangeNotificationA(directory, subtree, filter);
}
BOOL FindNextChangeNotification(HANDLE change) { return ::FindNextChangeNotification(change); }
BOOL FindCloseChangeNotification(HANDLE change) { return ::FindCloseChangeNotification(change); }
DWORD WaitForSingleObject(HANDLE object, DWORD timeout) {
  return ::WaitForSingleObject(object, timeout);
}
void Sleep(DWORD milliseconds) { ::Sleep(milliseconds); }

}  // namespace kz::os
