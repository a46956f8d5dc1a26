/* The public header used from C11: records, constants and a few calls into the library. */
#include <stdio.h>
#include <string.h>

#include "webmgmt.h"

int main(void) {
    form_pair pair = {NULL, NULL};
    proc_entry entry;
    char text[64] = "";
    unsigned char mac[6] = {0xaa, 0xbb, 0xcc, 0x01, 0x02, 0x03};
    memset(&entry, 0, sizeof entry);
    (void)pair;
    print_byte_to_string(text, mac, 6);
    if (strcmp(text, "AA:BB:CC:01:02:03") != 0) {
        fprintf(stderr, "print_byte_to_string gave %s\n", text);
        return 1;
    }
    if (free_buffer(get_buffer(16), 16) != 0) return 1;
    return 0;
}
