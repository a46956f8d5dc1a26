/* A firmware-upload CGI program as the device's pages use the library, for the tests that
 * run it under a real web server. QUERY_STRING "stream" saves the file with the streaming
 * writer to $UPLOAD_DIR/stream.bin; anything else splits the body in memory and saves each
 * part to $UPLOAD_DIR/part<N>.bin. The reply lists what happened. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "webmgmt.h"

static int save_stream(const char *dir) {
    char path[1024];
    snprintf(path, sizeof path, "%s/stream.bin", dir);
    printf("stream %d\n", save_queue_for_upload(path));
    return 0;
}

static int save_parts(const char *dir) {
    int total = 0, boundary_length = 0;
    char *boundary = NULL;
    char *buffer = read_queue_for_upload1(&total, &boundary, &boundary_length);
    if (!buffer) {
        printf("memory null\n");
        return 0;
    }
    upload_part parts[WEBMGMT_UPLOAD_PARTS];
    memset(parts, 0, sizeof parts);
    int count = process_file(buffer, total, boundary, parts);
    printf("memory %d\n", count);
    for (int i = 0; i < count; ++i) {
        char path[1024];
        snprintf(path, sizeof path, "%s/part%d.bin", dir, i);
        FILE *f = fopen(path, "wb");
        if (!f || fwrite(parts[i].data, 1, parts[i].length, f) != parts[i].length) {
            printf("cannot write %s\n", path);
        }
        if (f) fclose(f);
        printf("part %d %s|%s|%u\n", i, parts[i].name, parts[i].content_type,
               (unsigned)parts[i].length);
    }
    free_prop_file(parts, count);
    free(buffer);
    free(boundary);
    return 0;
}

int main(void) {
    const char *dir = getenv("UPLOAD_DIR");
    const char *query = getenv("QUERY_STRING");
    printf("Content-Type: text/plain\r\n\r\n");
    if (!dir) {
        printf("no UPLOAD_DIR\n");
        return 0;
    }
    return query && strcmp(query, "stream") == 0 ? save_stream(dir) : save_parts(dir);
}
