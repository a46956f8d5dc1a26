// fleetd: a development stand-in for the controller's AP daemon. On the device that daemon
// fills the managed-AP list, the AP runtime table (scan lists) and the station tables from
// what the APs report, and the templates from the controller's own settings; here it writes
// a fleet of made-up APs into the configuration store the same way, so that the console has
// something alive to show.
//
//   fleetd [--aps N] [--seed S] [--follow] [--interval-ms MS] [--offline-every K]
//
// --aps N       the number of managed APs (0 up to the store's maximum; more is refused)
// --seed S      the seed of the made-up values (the same seed writes the same fleet)
// --follow      keep running: every interval the online times advance, stations come and
//               go, and every K-th round the last AP goes offline for one round
// --interval-ms the interval of --follow (default 2000)
//
// It writes the memory copies (as the daemon does: the fleet is gone after a reboot) and
// ends on SIGTERM or SIGINT after the round it is in. While it follows, what the console's
// forms store stays: each round writes only what the APs report (status, online time,
// station counts, traffic counters) into the managed-AP list as stored then, under the
// list's lock file, which the console's AP forms hold around their own saves; and only its
// APs' station tables into the station tables as stored then.
#include <csignal>
#include <cerrno>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string_view>

#include <arpa/inet.h>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "config_data_api.h"

namespace {

volatile std::sig_atomic_t g_stop = 0;
void on_signal(int) {
    g_stop = 1;
}

// A small deterministic generator (xorshift32): the same seed writes the same fleet.
struct Random {
    uint32_t state;
    uint32_t next() {
        state ^= state << 13;
        state ^= state >> 17;
        state ^= state << 5;
        return state;
    }
    int below(int n) { return int(next() % uint32_t(n)); }
};

template <size_t N>
__attribute__((format(printf, 2, 3))) void put(char (&member)[N], const char *format, ...) {
    va_list args;
    va_start(args, format);
    std::vsnprintf(member, N, format, args);
    va_end(args);
}

struct Options {
    int aps = 1;
    uint32_t seed = 1;
    bool follow = false;
    long interval_ms = 2000;
    int offline_every = 5;
};

void mac_of(uint8_t *mac, int ap, int a, int b) {
    const uint8_t m[6] = {0x00, 0x1E, 0x42, uint8_t(0x10 + ap), uint8_t(a), uint8_t(b)};
    std::memcpy(mac, m, 6);
}

const char *const kNeighbours[] = {"\"Office\"",       "\"Guest WiFi\"",  "unknown",
                                   "\"printer-3F\"",   "\"Cafe Corner\"", "\"IoT-sensors\"",
                                   "\"meeting-room\"", "\"Lab 5G\"",      "\"warehouse\""};

void fill_radio(ap_radio &r, int ap, int radio, Random &rnd) {
    const bool five = radio > 0;
    r.m_radio_type = uint8_t(five ? 2 : 1);
    r.m_wirelessmode = uint8_t(five ? 14 : 9);
    r.m_wirelessbwmode = uint8_t(five ? 2 : 1);
    r.m_ampduenable = 1;
    r.m_wlan_beacon_interval = 100;
    r.m_wlan_rts = 2347;
    r.m_wlan_frag = 2346;
    r.m_wlan_shortGI = 1;
    r.m_wlan_txpower = int16_t(1 + rnd.below(5));
    r.m_wlan_max_txpower = int16_t(five ? 23 : 20);
    static const int16_t k24[] = {1, 6, 11};
    static const int16_t k58[] = {36, 44, 149, 157};
    r.m_channel = five ? k58[rnd.below(4)] : k24[rnd.below(3)];
    r.m_channel_config = 0; // automatic
    r.m_coverage_threshold = -90;
    r.m_MaxStanum = 64;
    put(r.contrystr, "CN");
    for (int v = 0; v < WEBMGMT_AP_VAPS; ++v) {
        defap_vap &vap = r.m_vap[v];
        vap.m_wlan_enable = uint8_t(v < 2);
        put(vap.m_ssid, v == 0 ? "Company%s" : "Company-Guest%s", five ? "-5G" : "");
        vap.m_vlanid = int16_t(v == 1 ? 20 : 1);
        mac_of(vap.m_bssid.mac, ap, 0x40 + radio, v);
        vap.m_security = 6;
        vap.m_securitycipher = 8;
        vap.m_authmode = 9;
        vap.m_psk_keytype = 1;
        put(vap.m_psk_keystr, "fleet-pass-%d", v);
        vap.m_radius_serverport = 1812;
    }
}

void fill_ap(ap_device_record &ap, int i, Random &rnd) {
    std::memset(&ap, 0, sizeof ap);
    ap.m_ip = htonl(0xC0A80A00u + 20 + uint32_t(i)); // 192.168.10.20 on
    ap.m_id = i + 1;
    put(ap.m_dev_name, "ap-%02d", i + 1);
    mac_of(ap.m_dev_mac.mac, i, 0x0C, 0xD0 + i);
    ap.m_dev_status = 1;
    ap.m_onlinetime = uint32_t(rnd.below(3 * 86400));
    put(ap.m_sw_ver, "V2.1.%d", 5 + i % 3);
    ap.m_wlan_radio_num = uint8_t(i % 4 == 3 ? 2 : 3);
    ap.m_TimeRebootEnable = uint8_t(i % 2);
    put(ap.m_RebootTime, "03:%02d", (i * 7) % 60);
    put(ap.m_dev_modelname, i % 2 ? "AP-300" : "AP-600");
    for (int r = 0; r < WEBMGMT_AP_RADIOS; ++r)
        fill_radio(ap.m_conf.m_radio[r], i, r, rnd);
    ap.m_conf.m_timereboot.m_TimeRebootEnable = ap.m_TimeRebootEnable;
    ap.m_conf.m_timereboot.m_TimeReboot_Hour = 3;
    ap.m_conf.m_weblogin.m_enable = 1;
    put(ap.m_conf.m_weblogin.m_username, "admin");
    put(ap.m_conf.m_weblogin.m_userpwd, "admin");
}

// What a site survey on each radio found: neighbours on the band's channels.
void fill_scans(ap_runtime_entry &e, const ap_device_record &ap, Random &rnd) {
    std::memset(&e, 0, sizeof e);
    e.m_dev_mac = ap.m_dev_mac;
    static const int16_t k24[] = {1, 3, 6, 6, 9, 11, 11, 13};
    static const int16_t k58[] = {36, 40, 44, 48, 149, 153, 157, 161, 165};
    for (int r = 0; r < WEBMGMT_AP_RADIOS; ++r) {
        const int found = 6 + rnd.below(10);
        for (int n = 0; n < found; ++n) {
            // Scattered over the 64 slots, as the AP reports them.
            ap_scan_slot &s = e.m_scan[r][(n * 5 + r) % WEBMGMT_SCAN_SLOTS];
            put(s.m_name, "%s", kNeighbours[rnd.below(int(std::size(kNeighbours)))]);
            mac_of(s.m_bssid.mac, 0x60 + r, n, rnd.below(256));
            s.m_signal = int16_t(-35 - rnd.below(55));
            s.m_quality = char(s.m_signal > -55 ? 'A' : s.m_signal > -70 ? 'B' : 'C');
            s.m_channel = r == 0 ? k24[rnd.below(8)] : k58[rnd.below(9)];
        }
    }
}

// The stations of one AP: between none and a dozen per radio.
void fill_stations(sta_table &t, ap_device_record &ap, Random &rnd) {
    std::memset(&t, 0, sizeof t);
    t.m_ap_mac = ap.m_dev_mac;
    int used = 0;
    for (int r = 0; r < WEBMGMT_AP_RADIOS; ++r) {
        const int n = r < ap.m_wlan_radio_num && ap.m_dev_status ? rnd.below(13) : 0;
        ap.m_conf.m_radio[r].m_stanum = int16_t(n);
        for (int k = 0; k < n && used < WEBMGMT_STATIONS; ++k, ++used) {
            sta_entry &s = t.m_sta[used];
            s.m_radioid = uint8_t(r);
            s.m_wlanid = uint8_t(rnd.below(2));
            const uint8_t mac[6] = {0x3C,       0x22,       0xFB,
                                    uint8_t(r), uint8_t(k), uint8_t(rnd.below(256))};
            std::memcpy(s.m_mac.mac, mac, 6);
            put(s.m_ip, "192.168.%d.%d", 20 + r, 100 + used);
            s.m_signal = -40 - rnd.below(45);
            s.m_tx_rate = 72 + rnd.below(800);
            s.m_rx_rate = 72 + rnd.below(800);
            s.m_time = rnd.below(20000);
        }
    }
}

// Two templates, one for each model, the first bound to the first AP, into an empty list.
void write_templates(int aps, const manage_ap_list_config &list) {
    ap_template_list_config *t = SC_Get_ApTemplateList_System_Config();
    defap_config *def = SC_Get_DefApTemplate_System_Config();
    if (!t || !def) return;
    // Templates someone made already are theirs: the fleet's two are written only into an
    // empty list.
    for (const ap_template_entry &e : t->m_template)
        if (e.m_wlan_group_id >= 1) return;
    std::memset(t->m_template, 0, sizeof t->m_template);
    t->count = 2;
    for (int i = 0; i < 2; ++i) {
        ap_template_entry &e = t->m_template[i];
        e.m_wlan_group_id = i + 1;
        put(e.m_wlan_group_name, i ? "Warehouse" : "Head office");
        put(e.m_modelname, i ? "AP-300" : "AP-600");
        std::memcpy(e.m_radio, def->m_radio, sizeof e.m_radio);
        e.m_timereboot = def->m_timereboot;
        e.m_weblogin = def->m_weblogin;
        e.m_iptv = def->m_iptv;
        if (i == 0 && aps > 0) e.m_bind_mac = list.m_ap[0].m_dev_mac;
    }
    SC_Save_System_ApTemplateList_Config(t);
}

bool parse(int argc, char **argv, Options &o) {
    for (int i = 1; i < argc; ++i) {
        std::string_view a = argv[i];
        // 64-bit, so that a seed up to 2^32-1 fits on the 32-bit device as well.
        auto value = [&](long long lo, long long hi, long long &out) {
            if (i + 1 >= argc) return false;
            char *end = nullptr;
            out = std::strtoll(argv[++i], &end, 10);
            return *end == '\0' && end != argv[i] && out >= lo && out <= hi;
        };
        long long v = 0;
        if (a == "--follow") {
            o.follow = true;
        } else if (a == "--aps" && value(0, WEBMGMT_AP_MAX, v)) {
            o.aps = int(v);
        } else if (a == "--seed" && value(0, UINT32_MAX, v)) {
            o.seed = uint32_t(v) | 1u; // xorshift never leaves 0
        } else if (a == "--interval-ms" && value(10, 3600000, v)) {
            o.interval_ms = long(v);
        } else if (a == "--offline-every" && value(2, 1000000, v)) {
            o.offline_every = int(v);
        } else {
            std::fprintf(stderr,
                         "fleetd: bad argument %s\nusage: fleetd [--aps 0..%d] [--seed S] "
                         "[--follow] [--interval-ms MS] [--offline-every K]\n",
                         argv[i], WEBMGMT_AP_MAX);
            return false;
        }
    }
    return true;
}

// One write of everything the daemon owns.
int save(manage_ap_list_config *list, ap_runtime_config *runtime, ap_user_config *users) {
    int rc = SC_Save_System_ManageApList_Config(list);
    rc |= SC_Save_System_ApRuntime_Config(runtime);
    rc |= SC_Save_System_ApUser_Config(users);
    return rc;
}

// What the APs report of `from`, put into `to`: everything else of `to` is the
// administrator's (name, group, position, reboot schedule, configuration).
void take_reported(ap_device_record &to, const ap_device_record &from) {
    to.m_dev_status = from.m_dev_status;
    to.m_onlinetime = from.m_onlinetime;
    for (int r = 0; r < WEBMGMT_AP_RADIOS; ++r) {
        to.m_conf.m_radio[r].m_stanum = from.m_conf.m_radio[r].m_stanum;
        for (int v = 0; v < WEBMGMT_AP_VAPS; ++v) {
            defap_vap &t = to.m_conf.m_radio[r].m_vap[v];
            const defap_vap &f = from.m_conf.m_radio[r].m_vap[v];
            t.m_tx_bytes = f.m_tx_bytes;
            t.m_rx_bytes = f.m_rx_bytes;
            t.m_tx_pkts = f.m_tx_pkts;
            t.m_rx_pkts = f.m_rx_pkts;
        }
    }
}

// One round's write of the managed-AP list. A forked child loads the section afresh (the
// store reloads for a new process), takes the list's lock file, puts the reported members
// of `mine` into the stored APs of the same MAC and saves; 0 when that worked.
// The station tables of the fleet's APs, put into the tables as stored now (found by the
// AP's MAC): the device's own stations and other APs' tables, written by others, stay.
int save_stations(const ap_user_config &mine) {
    auto *reported = static_cast<ap_user_config *>(std::malloc(sizeof(ap_user_config)));
    if (!reported) return -1;
    std::memcpy(reported, &mine, sizeof mine);
    ap_user_config *stored = SC_Get_ApUser_System_Config();
    if (!stored) return -1;
    for (int i = 0; i < reported->count && i < WEBMGMT_AP_MAX; ++i) {
        int at = SC_Get_ApUser_Info_By_Mac(stored, reported->m_ap[i].m_ap_mac.mac);
        if (at >= 0 && at < WEBMGMT_AP_MAX) stored->m_ap[at] = reported->m_ap[i];
    }
    return SC_Save_System_ApUser_Config(stored);
}

int save_reported(const manage_ap_list_config &mine, const ap_user_config &stations) {
    pid_t pid = fork();
    if (pid < 0) return -1;
    if (pid == 0) {
        auto *reported =
            static_cast<manage_ap_list_config *>(std::malloc(sizeof(manage_ap_list_config)));
        if (!reported) _exit(1);
        std::memcpy(reported, &mine, sizeof mine);
        // The lock file's name is the same in every copy of the section: the child's own
        // copy is loaded only once the lock is held.
        char lock[sizeof mine.lock_file + 1] = {};
        std::memcpy(lock, mine.lock_file, sizeof mine.lock_file);
        int fd = lock[0] ? open(lock, O_RDWR | O_CREAT | O_CLOEXEC, 0644) : -1;
        if (fd >= 0) sc_lock_reg(fd, 14, 1, 0, SEEK_CUR, 0, 0); // write lock, waiting
        // The lock is ours: now read what the forms stored last.
        manage_ap_list_config *stored = SC_Get_ManageApList_System_Config();
        if (!stored) _exit(1);
        for (int i = 0; i < reported->count && i < WEBMGMT_AP_MAX; ++i) {
            int at = SC_Get_Ap_Info_By_Mac(stored, reported->m_ap[i].m_dev_mac.mac);
            if (at >= 0 && at < WEBMGMT_AP_MAX) take_reported(stored->m_ap[at], reported->m_ap[i]);
        }
        int rc = SC_Save_System_ManageApList_Config(stored);
        if (fd >= 0) close(fd);
        rc |= save_stations(stations);
        _exit(rc == CONFIG_OK ? 0 : 1);
    }
    int status = 0;
    while (waitpid(pid, &status, 0) < 0)
        if (errno != EINTR) return -1;
    return WIFEXITED(status) && WEXITSTATUS(status) == 0 ? 0 : -1;
}

} // namespace

int main(int argc, char **argv) {
    Options o;
    if (!parse(argc, argv, o)) return 2;
    manage_ap_list_config *list = SC_Get_ManageApList_System_Config();
    ap_runtime_config *runtime = SC_Get_ApRuntime_System_Config();
    ap_user_config *users = SC_Get_ApUser_System_Config();
    if (!list || !runtime || !users) {
        std::fprintf(stderr, "fleetd: the configuration store could not load the sections\n");
        return 1;
    }
    Random rnd{o.seed};
    list->count = o.aps;
    runtime->count = o.aps;
    users->count = o.aps;
    for (int i = 0; i < WEBMGMT_AP_MAX; ++i) {
        if (i < o.aps) {
            fill_ap(list->m_ap[i], i, rnd);
            fill_scans(runtime->m_ap[i], list->m_ap[i], rnd);
            fill_stations(users->m_ap[i], list->m_ap[i], rnd);
        } else {
            std::memset(&list->m_ap[i], 0, sizeof list->m_ap[i]);
            std::memset(&runtime->m_ap[i], 0, sizeof runtime->m_ap[i]);
            std::memset(&users->m_ap[i], 0, sizeof users->m_ap[i]);
        }
    }
    write_templates(o.aps, *list);
    if (save(list, runtime, users) != CONFIG_OK) {
        std::fprintf(stderr, "fleetd: the configuration store could not save the fleet\n");
        return 1;
    }
    if (!o.follow) return 0;

    struct sigaction sa {};
    sa.sa_handler = on_signal;
    sigaction(SIGTERM, &sa, nullptr);
    sigaction(SIGINT, &sa, nullptr);
    const uint32_t step = uint32_t((o.interval_ms + 999) / 1000);
    for (long round = 1; !g_stop; ++round) {
        timespec pause{o.interval_ms / 1000, (o.interval_ms % 1000) * 1000000L};
        while (nanosleep(&pause, &pause) != 0 && !g_stop) {
        }
        if (g_stop) break;
        for (int i = 0; i < o.aps; ++i) {
            ap_device_record &ap = list->m_ap[i];
            // The last AP drops off for one round in every K: its time starts again.
            const bool offline = i == o.aps - 1 && round % o.offline_every == 0;
            if (offline) {
                ap.m_dev_status = 0;
                ap.m_onlinetime = 0;
            } else {
                ap.m_dev_status = 1;
                ap.m_onlinetime += step;
            }
            fill_stations(users->m_ap[i], ap, rnd);
            for (int r = 0; r < WEBMGMT_AP_RADIOS; ++r)
                for (int v = 0; v < WEBMGMT_AP_VAPS; ++v) {
                    defap_vap &vap = ap.m_conf.m_radio[r].m_vap[v];
                    const int n = ap.m_conf.m_radio[r].m_stanum;
                    vap.m_tx_bytes += uint64_t(n) * uint64_t(200000 + rnd.below(5000000));
                    vap.m_rx_bytes += uint64_t(n) * uint64_t(50000 + rnd.below(1000000));
                    vap.m_tx_pkts += uint32_t(n * 300);
                    vap.m_rx_pkts += uint32_t(n * 120);
                }
        }
        int rc = save_reported(*list, *users);
        rc |= SC_Save_System_ApRuntime_Config(runtime);
        if (rc != CONFIG_OK)
            std::fprintf(stderr, "fleetd: the configuration store could not save the fleet\n");
    }
    return 0;
}
