// Add, modify, delete and clear on any list: one locked read-modify-write of the stored
// section, written to memory and flash, then copied into the caller's record.
#include "store/internal/lists.h"

#include <cstdlib>
#include <cstring>

namespace wm::store {
namespace {

uint8_t *slot_at(uint8_t *record, const ListDesc &l, uint32_t slot) {
    return record + l.elem_offset + size_t(slot) * l.elem_size;
}

void set_id(uint8_t *record, const ListDesc &l, uint32_t slot, int32_t id) {
    std::memcpy(slot_at(record, l, slot) + l.id_offset, &id, sizeof id);
}

// The elements in use move to the front in their order and the count member tells how many
// there are: the pages show slots 0 to count - 1, even of a list saved or edited with gaps.
void store_count(uint8_t *record, const ListDesc &l) {
    uint32_t used = 0;
    for (uint32_t i = 0; i < l.capacity; ++i) {
        if (element_id(record, l, i) <= 0) continue;
        if (i != used) {
            std::memcpy(slot_at(record, l, used), slot_at(record, l, i), l.elem_size);
            std::memset(slot_at(record, l, i), 0, l.elem_size);
        }
        ++used;
    }
    if (l.count_size == sizeof(int16_t)) {
        auto v = int16_t(used);
        std::memcpy(record + l.count_offset, &v, sizeof v);
    } else {
        auto v = int32_t(used);
        std::memcpy(record + l.count_offset, &v, sizeof v);
    }
}

int find_slot(const uint8_t *record, const ListDesc &l, int32_t id) {
    if (id <= 0) return -1;
    for (uint32_t i = 0; i < l.capacity; ++i)
        if (element_id(record, l, i) == id) return int(i);
    return -1;
}

// The smallest id above 0 that no element bears; a list never holds more than its
// capacity, so one of 1 .. capacity + 1 is free.
int32_t unused_id(const uint8_t *record, const ListDesc &l) {
    for (int32_t id = 1;; ++id)
        if (find_slot(record, l, id) < 0) return id;
}

// Runs `change` on the stored section under its lock; on success stores the section and
// hands the new list to the caller.
template <typename Change>
int transact(const ListDesc &l, void *list, Change change, AfterDelete after = nullptr,
             void *context = nullptr, int32_t id = 0) {
    Transaction t(l.section);
    if (!t.ok()) return CONFIG_ERR_IO;
    int rc = change(t.record());
    if (rc != CONFIG_OK) return rc;
    store_count(t.record(), l);
    rc = t.commit(true);
    if (rc != CONFIG_OK) return rc;
    t.publish(l, list);
    return after ? after(context, id) : CONFIG_OK;
}

} // namespace

int32_t element_id(const uint8_t *record, const ListDesc &l, uint32_t slot) {
    int32_t id;
    std::memcpy(&id, record + l.elem_offset + size_t(slot) * l.elem_size + l.id_offset, sizeof id);
    return id;
}

bool key_id(const void *key, int32_t *id) {
    if (!key) return false;
    char text[6] = {};
    std::memcpy(text, key, strnlen(static_cast<const char *>(key), 5));
    *id = int32_t(std::strtol(text, nullptr, 10));
    return true;
}

int list_add(const ListDesc &l, void *list, void *element) {
    if (!element) return CONFIG_ERR_ARGUMENT;
    int32_t assigned = 0;
    int rc = transact(l, list, [&](uint8_t *record) {
        int slot = -1; // the first free slot: id 0 or below
        for (uint32_t i = 0; slot < 0 && i < l.capacity; ++i)
            if (element_id(record, l, i) <= 0) slot = int(i);
        if (slot < 0) return CONFIG_ERR_FULL;
        assigned = unused_id(record, l);
        std::memcpy(slot_at(record, l, uint32_t(slot)), element, l.elem_size);
        set_id(record, l, uint32_t(slot), assigned);
        return CONFIG_OK;
    });
    if (rc == CONFIG_OK)
        std::memcpy(static_cast<uint8_t *>(element) + l.id_offset, &assigned, sizeof assigned);
    return rc;
}

int list_modify(const ListDesc &l, void *list, const void *element) {
    if (!element) return CONFIG_ERR_ARGUMENT;
    int32_t id;
    std::memcpy(&id, static_cast<const uint8_t *>(element) + l.id_offset, sizeof id);
    return transact(l, list, [&](uint8_t *record) {
        int slot = find_slot(record, l, id);
        if (slot < 0) return CONFIG_ERR_NO_ID;
        std::memcpy(slot_at(record, l, uint32_t(slot)), element, l.elem_size);
        return CONFIG_OK;
    });
}

int list_delete(const ListDesc &l, void *list, const void *key, AfterDelete after, void *context) {
    int32_t id;
    if (!key_id(key, &id)) return CONFIG_ERR_ARGUMENT;
    return transact(
        l, list,
        [&](uint8_t *record) {
            int slot = find_slot(record, l, id);
            if (slot < 0) return CONFIG_ERR_NO_ID;
            // Close the gap so that the elements in use stay in slots 0 .. count - 1.
            uint8_t *at = slot_at(record, l, uint32_t(slot));
            std::memmove(at, at + l.elem_size,
                         size_t(l.capacity - 1 - uint32_t(slot)) * l.elem_size);
            std::memset(slot_at(record, l, l.capacity - 1), 0, l.elem_size);
            return CONFIG_OK;
        },
        after, context, id);
}

int list_clear(const ListDesc &l, void *list, AfterDelete after, void *context) {
    return transact(
        l, list,
        [&](uint8_t *record) {
            std::memset(record + l.elem_offset, 0, size_t(l.capacity) * l.elem_size);
            return CONFIG_OK;
        },
        after, context, -1);
}

} // namespace wm::store
