/*
 * webmgmt: the building blocks every configuration record is made of (address and MAC
 * members, the common record head) and the convention the records are declared in.
 */
#ifndef WEBMGMT_RECORD_TYPES_H
#define WEBMGMT_RECORD_TYPES_H

#include <stdint.h>

#include "webmgmt/common.h"

WEBMGMT_BEGIN_DECLS

/* ===================================================================================== */
/* Record building blocks                                                                */
/* ===================================================================================== */

/*
 * Configuration records are exchanged whole with the configuration store, so their layout
 * is fixed: members in declaration order, natural alignment, the same bytes on the 32-bit
 * ARM device and on x86-64 hosts (no pointers, no long, 64-bit members at 8-aligned
 * offsets).
 *
 * Each record and nested block is declared once, as a member list
 *     X(code, type, name, dimensions)
 * that is expanded here into the struct and in conf/ into the field-table builder, so a
 * member's name, size, place and type code cannot drift apart. `code` is the field-table
 * type code of the member (1 to 12); 0 marks members that no table lists (nested blocks,
 * room kept for settings that forms and views name, explicit padding).
 */
#define WEBMGMT_DECLARE_MEMBER(code, type, name, dims) type name dims;

/* An IPv4 address member: the address in network order in the second 32-bit word. */
typedef struct ipaddr_field {
    uint32_t family;
    uint32_t v4;
    uint8_t resved[8];
} ipaddr_field;
WEBMGMT_STATIC_ASSERT(sizeof(ipaddr_field) == 16, "ipaddr_field layout");

/* An IPv6 address member: the 16 address bytes after the family word and the IPv4 slot. */
typedef struct ip6addr_field {
    uint32_t family;
    uint32_t v4;
    uint8_t v6[16];
    uint32_t scope;
} ip6addr_field;
WEBMGMT_STATIC_ASSERT(sizeof(ip6addr_field) == 28, "ip6addr_field layout");

/* A 6-byte MAC address member (named with a further ".mac" in field tables). */
typedef struct mac_field {
    uint8_t mac[6];
} mac_field;
WEBMGMT_STATIC_ASSERT(sizeof(mac_field) == 6, "mac_field layout");

#define WEBMGMT_CONFIG_VERSION_MEMBERS(X)                                                          \
    X(5, uint8_t, main_version, )                                                                  \
    X(5, uint8_t, sub_version, )
typedef struct config_version {
    WEBMGMT_CONFIG_VERSION_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} config_version;
WEBMGMT_STATIC_ASSERT(sizeof(config_version) == 2, "config_version layout");

/* The four members every record begins with. */
#define WEBMGMT_RECORD_HEAD(X)                                                                     \
    X(0, config_version, config_ver, )                                                             \
    X(5, char, lock_file, [128])                                                                   \
    X(0, uint8_t, pad_lock_location, [2])                                                          \
    X(1, int32_t, lock_location, )

/* Timed reboot, shared by the misc record and the AP template. */
#define WEBMGMT_TIMEREBOOT_MEMBERS(X)                                                              \
    X(4, uint8_t, m_TimeRebootEnable, )                                                            \
    X(4, uint8_t, m_TimeRebootType, )                                                              \
    X(4, uint8_t, m_TimeReboot_Hour, )                                                             \
    X(4, uint8_t, m_TimeReboot_Day, )                                                              \
    X(4, uint8_t, m_TimeReboot_Month, )                                                            \
    X(4, uint8_t, m_TimeReboot_Week, )
typedef struct timereboot_config {
    WEBMGMT_TIMEREBOOT_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} timereboot_config;
WEBMGMT_STATIC_ASSERT(sizeof(timereboot_config) == 6, "timereboot_config layout");

/* One entry of a MAC access list (per radio, and the global list of misc_ext_config). */
#define WEBMGMT_ACL_ENTRY_MEMBERS(X)                                                               \
    X(1, int32_t, id, )                                                                            \
    X(4, char, name, [200])                                                                        \
    X(4, char, mac, [20])                                                                          \
    X(4, uint8_t, status, )                                                                        \
    X(4, char, mark, [200])                                                                        \
    X(4, char, resved, [500])                                                                      \
    X(0, uint8_t, pad_end, [3])
typedef struct acl_entry {
    WEBMGMT_ACL_ENTRY_MEMBERS(WEBMGMT_DECLARE_MEMBER)
} acl_entry;
WEBMGMT_STATIC_ASSERT(sizeof(acl_entry) == 928, "acl_entry layout");

WEBMGMT_END_DECLS
#endif /* WEBMGMT_RECORD_TYPES_H */
