/*
 * A small HTTP load: `clients` threads, each sending HTTP/1.0 GET requests for `path` to
 * 127.0.0.1:`port` one after another (a new connection each, as a browser's CGI requests
 * go) for `seconds`; prints the completed requests per second. A reply must start with
 * "HTTP/1.0 200" or "HTTP/1.1 200" to count.
 */
#define _GNU_SOURCE
#include <arpa/inet.h>
#include <netinet/in.h>
#include <pthread.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/socket.h>
#include <time.h>
#include <unistd.h>

static int g_port;
static char g_request[512];
static double g_end;
static long g_done[64];
static long g_failed[64];

static double now(void) {
    struct timespec t;
    clock_gettime(CLOCK_MONOTONIC, &t);
    return (double)t.tv_sec + (double)t.tv_nsec / 1e9;
}

static int one_request(void) {
    int fd = socket(AF_INET, SOCK_STREAM, 0);
    if (fd < 0) return 0;
    struct sockaddr_in a;
    memset(&a, 0, sizeof a);
    a.sin_family = AF_INET;
    a.sin_port = htons((unsigned short)g_port);
    a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    int ok = 0;
    if (connect(fd, (struct sockaddr *)&a, sizeof a) == 0 &&
        write(fd, g_request, strlen(g_request)) == (ssize_t)strlen(g_request)) {
        char head[16] = {0};
        size_t got = 0;
        char buf[4096];
        ssize_t n;
        while ((n = read(fd, buf, sizeof buf)) > 0) {
            for (ssize_t i = 0; i < n && got < sizeof head - 1; ++i)
                head[got++] = buf[i];
        }
        ok = strncmp(head, "HTTP/1.0 200", 12) == 0 || strncmp(head, "HTTP/1.1 200", 12) == 0;
    }
    close(fd);
    return ok;
}

static void *client(void *arg) {
    long id = (long)arg;
    while (now() < g_end) {
        if (one_request())
            ++g_done[id];
        else
            ++g_failed[id];
    }
    return NULL;
}

int main(int argc, char **argv) {
    if (argc != 6) {
        fprintf(stderr, "usage: %s port path cookie clients seconds\n", argv[0]);
        return 2;
    }
    g_port = atoi(argv[1]);
    int clients = atoi(argv[4]);
    double seconds = atof(argv[5]);
    if (clients < 1 || clients > 64) return 2;
    snprintf(g_request, sizeof g_request,
             "GET %s HTTP/1.0\r\nHost: 127.0.0.1\r\nCookie: %s\r\n\r\n", argv[2], argv[3]);
    double start = now();
    g_end = start + seconds;
    pthread_t t[64];
    for (long i = 0; i < clients; ++i)
        pthread_create(&t[i], NULL, client, (void *)i);
    long done = 0, failed = 0;
    for (long i = 0; i < clients; ++i) {
        pthread_join(t[i], NULL);
        done += g_done[i];
        failed += g_failed[i];
    }
    printf("%.1f %ld\n", (double)done / (now() - start), failed);
    return 0;
}
