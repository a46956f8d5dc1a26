// Splitting one fuzz input into several texts: the fields are separated by a 0xFF byte
// (which no text format of the library gives a meaning), missing fields are empty.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace fuzzsupport {

inline std::vector<std::string> split_fields(const uint8_t *data, size_t size, size_t count) {
    std::vector<std::string> fields(count);
    size_t field = 0;
    for (size_t i = 0; i < size; ++i) {
        if (data[i] == 0xFF && field + 1 < count) {
            ++field;
            continue;
        }
        fields[field].push_back(char(data[i]));
    }
    return fields;
}

// The text up to its first NUL, as an environment variable or a C string would hold it.
inline std::string c_text(const std::string &s) {
    return s.substr(0, s.find('\0'));
}

} // namespace fuzzsupport
