/*
 * view.cgi?name=<section>: prints one configuration section as the library's JSON view,
 * for a logged-in browser. The token may come in the query string ("stork=") or the
 * cookie.
 */
#include "cgi_common.h"

#include <stdio.h>
#include <string.h>

typedef int (*view_fn)(void);

/* Each view fetches its record from the configuration store and prints it. A record is
 * static: some are large for a CGI program's stack. */
#if defined(WM_HAVE_SC_Get_ProductInfo_System_Config) && defined(WM_HAVE_printf_ProductInfo_json)
static int view_product(void) {
    static productinfo_config record;
    WM_NEED(SC_Get_ProductInfo_System_Config);
    WM_NEED(printf_ProductInfo_json);
    SC_Get_ProductInfo_System_Config(&record);
    cgi_begin_json(200, NULL);
    printf_ProductInfo_json(&record);
    return 0;
}
#define VIEW_PRODUCT {"product", view_product},
#else
#define VIEW_PRODUCT
#endif

#if defined(WM_HAVE_SC_Get_Misc_System_Config) && defined(WM_HAVE_printf_Misc_json)
static int view_system(void) {
    static misc_config record;
    WM_NEED(SC_Get_Misc_System_Config);
    WM_NEED(printf_Misc_json);
    SC_Get_Misc_System_Config(&record);
    cgi_begin_json(200, NULL);
    printf_Misc_json(&record);
    return 0;
}
#define VIEW_SYSTEM {"system", view_system},
#else
#define VIEW_SYSTEM
#endif

/* The rule lists (portforward, ipportfilter, macfilter, urlfilter, qos, ipgroup,
 * timegroup) join this table as their views land. */
static const struct {
    const char *name;
    view_fn print;
} kViews[] = {VIEW_PRODUCT VIEW_SYSTEM{NULL, NULL}};

int main(void) {
    /* The session check reads the query string, which decoding would remove. */
    if (cgi_require_session(0) != 0) return 0;
    char name[64];
    if (cgi_query_value("name", name, sizeof name) != 0) {
        cgi_reply_error(400, "name the section: view.cgi?name=...");
        return 0;
    }
    for (size_t i = 0; kViews[i].name; ++i)
        if (strcmp(kViews[i].name, name) == 0) return kViews[i].print();
    cgi_reply_error(404, "no such section in this build");
    return 0;
}
