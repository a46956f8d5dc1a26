// The variables of the AP-template and managed-AP forms: the radios and VAPs under the
// names of the device's own all-radio wireless form ("m_channel1", "m_ssid12"), and the
// device blocks under their dotted member names ("m_timereboot.m_TimeReboot_Hour").
#pragma once

#include "webmgmt.h"

namespace wm {

// One request's pairs, and the conversions of the wireless forms into members. An absent
// variable leaves its member as it was.
class FormVars {
  public:
    FormVars(const form_pair *pairs, int count) : pairs_(pairs), count_(count) {}

    // A one-byte member, as get_prop_char sets it.
    void byte(const char *name, uint8_t &member) const;
    // 16- and 32-bit members through atoi.
    void number(const char *name, int16_t &member) const;
    void number(const char *name, uint32_t &member) const;
    // A text member, cut at its size and always terminated.
    template <size_t N> void text(const char *name, char (&member)[N]) const {
        text(name, member, N);
    }
    // A dotted IPv4 address into the address member's IPv4 word.
    void ipv4(const char *name, ipaddr_field &member) const;

  private:
    void text(const char *name, char *member, size_t size) const;
    const form_pair *pairs_;
    int count_;
};

// The radio and VAP variables of radios 0 to 2, into any record whose radios carry the
// default template's members (defap_radio of the templates, ap_radio of a managed AP).
void apply_radios(const FormVars &v, defap_radio (&radios)[WEBMGMT_AP_RADIOS]);
void apply_radios(const FormVars &v, ap_radio (&radios)[WEBMGMT_AP_RADIOS]);

// The "m_timereboot.*", "m_weblogin.*" and "m_iptv.*" variables.
void apply_timereboot(const FormVars &v, timereboot_config &block);
void apply_weblogin(const FormVars &v, defap_weblogin &block);
void apply_iptv(const FormVars &v, defap_iptv &block);

// The default template's radios and blocks copied into a managed AP's configuration body:
// the members the two radio records share, by name; the AP's own (the channel it chose,
// its station count) are kept.
void copy_template_radio(ap_radio &to, const defap_radio &from);

} // namespace wm
