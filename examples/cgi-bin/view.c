/*
 * view.cgi?name=<section>: prints one configuration section as the library's JSON view,
 * for a logged-in browser. The token may come in the query string ("stork=") or the
 * cookie.
 */
#include "cgi_common.h"

#include <stdio.h>
#include <string.h>

typedef int (*view_fn)(void);

/* view_<name>: fetches the section (this process's copy) from the configuration store and
 * prints the library's view of it. A getter answers null only when memory runs out. */
#define DEFINE_VIEW(name, record_type, getter, printer)                                            \
    static int view_##name(void) {                                                                 \
        record_type *record = getter();                                                            \
        if (!record) {                                                                             \
            cgi_reply_error(500, "the configuration store could not load the section");            \
            return 1;                                                                              \
        }                                                                                          \
        cgi_begin_json(200, NULL);                                                                 \
        printer(record);                                                                           \
        return 0;                                                                                  \
    }

DEFINE_VIEW(product, productinfo_config, SC_Get_ProductInfo_System_Config, printf_ProductInfo_json)
/* The system view leaves out the administrator's password (see cgi_print_system_view). */
DEFINE_VIEW(system, misc_config, SC_Get_Misc_System_Config, cgi_print_system_view)
DEFINE_VIEW(portforward, vsipport_config, SC_Get_VsIpport_System_Config, printf_VsIpport_json)
DEFINE_VIEW(ipportfilter, fwipport_config, SC_Get_FwIpport_System_Config, printf_FwIpport_json)
DEFINE_VIEW(macfilter, fwmac_config, SC_Get_FwMac_System_Config, printf_FwMac_json)
DEFINE_VIEW(urlfilter, fwurl_config, SC_Get_FwUrl_System_Config, printf_FwUrl_json)
DEFINE_VIEW(qos, qos_config, SC_Get_Qos_System_Config, printf_Qos_json)
DEFINE_VIEW(ipgroup, ipport_config, SC_Get_IpGroup_System_Config, printf_IpGroup_json)
DEFINE_VIEW(timegroup, timegroup_config, SC_Get_TimeGroup_System_Config, printf_TimeGroup_json)

static const struct {
    const char *name;
    view_fn print;
} kViews[] = {{"product", view_product},
              {"system", view_system},
              {"portforward", view_portforward},
              {"ipportfilter", view_ipportfilter},
              {"macfilter", view_macfilter},
              {"urlfilter", view_urlfilter},
              {"qos", view_qos},
              {"ipgroup", view_ipgroup},
              {"timegroup", view_timegroup},
              {NULL, NULL}};

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
    cgi_reply_error(404, "no such section");
    return 0;
}
