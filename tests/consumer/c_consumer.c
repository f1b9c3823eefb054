/* A C99 caller of the shared library: the header must compile as C, and the
 * exports must be reachable through the library itself (the DLL's import
 * library on Windows). */
#include <stdio.h>
#include <string.h>

#include "kz_basis.h"

int main(void) {
  KZ_WCHAR wide[8];
  char narrow[8];
  StrList list = {0, NULL};
  int32_t decoded = KZ_SJIS2UNICODE("abc", wide, 8);
  int32_t encoded = KZ_UNICODE2SJIS(wide, narrow, 8);
  KZ_DeleteStrListA(&list);
  if (decoded != 5 || encoded != 5 || strcmp(narrow, "abc") != 0 || list.count != 0) {
    printf("c consumer: failed (%d, %d)\n", (int)decoded, (int)encoded);
    return 1;
  }
  printf("c consumer: ok\n");
  return 0;
}
