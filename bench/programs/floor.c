/* The floor: a dynamically linked CGI program that only prints its header. */
#include <stdio.h>

int main(void) {
    fputs("Content-Type: text/html\r\n\r\n", stdout);
    return 0;
}
