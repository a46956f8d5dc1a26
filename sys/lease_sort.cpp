// The order of a lease list: ascending by the address word as read from the file, compared
// as a native number (on the little-endian device: last octet first).
//
// The device sorts by exchanging the contents of an earlier node with a later one whose
// key is strictly smaller, for every pair, which costs n * n comparisons and moves whole
// node contents. When every key differs the result is simply the ascending order, which
// is reached here in n log n with each content moved once. With repeated keys (the same
// address leased twice) the exchanges leave equal keys in an order no stable sort gives,
// so those lists still go through the exchanges themselves.
#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>

#include "sys/support/raii.h"
#include "webmgmt.h"

namespace wm {
namespace {

// Everything in a node but its link.
constexpr size_t kContent = offsetof(lease_entry, next);

void exchange_contents(lease_entry *a, lease_entry *b) {
    unsigned char t[kContent];
    std::memcpy(t, a, kContent);
    std::memcpy(static_cast<void *>(a), b, kContent);
    std::memcpy(static_cast<void *>(b), t, kContent);
}

void exchange_sort(lease_entry *head) {
    for (lease_entry *a = head; a; a = a->next)
        for (lease_entry *b = a->next; b; b = b->next)
            if (a->sort_key > b->sort_key) exchange_contents(a, b);
}

struct KeyIndex {
    uint32_t key;
    uint32_t index;
};

// The ascending order when all keys differ; false (nothing changed) when a key repeats or
// memory is short.
bool sort_distinct(lease_entry *head, size_t n) {
    HeapPtr<KeyIndex> order(static_cast<KeyIndex *>(std::malloc(n * sizeof(KeyIndex))));
    HeapPtr<lease_entry *> nodes(
        static_cast<lease_entry **>(std::malloc(n * sizeof(lease_entry *))));
    if (!order || !nodes) return false;
    size_t i = 0;
    for (lease_entry *p = head; p; p = p->next, ++i) {
        nodes.get()[i] = p;
        order.get()[i] = {p->sort_key, uint32_t(i)};
    }
    KeyIndex *o = order.get();
    std::sort(o, o + n, [](const KeyIndex &a, const KeyIndex &b) { return a.key < b.key; });
    for (i = 1; i < n; ++i)
        if (o[i - 1].key == o[i].key) return false;
    HeapPtr<unsigned char> contents(static_cast<unsigned char *>(std::malloc(n * kContent)));
    if (!contents) return false;
    for (i = 0; i < n; ++i)
        std::memcpy(contents.get() + i * kContent, nodes.get()[o[i].index], kContent);
    for (i = 0; i < n; ++i)
        std::memcpy(static_cast<void *>(nodes.get()[i]), contents.get() + i * kContent, kContent);
    return true;
}

} // namespace
} // namespace wm

extern "C" void sort_dhcplist(lease_entry *head) {
    if (!head || !head->next) return;
    size_t n = 0;
    for (lease_entry *p = head; p; p = p->next)
        ++n;
    if (!wm::sort_distinct(head, n)) wm::exchange_sort(head);
}
