// Test support: reading a saved document back with libxml2, independently of the store.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace cambioip_test {

// Text of the first node matching the XPath in the file, or nullopt when the file does
// not parse or nothing matches.
std::optional<std::string> xmlText(const std::filesystem::path &file, const std::string &xpath);

// Whether the file is a well-formed XML document.
bool xmlWellFormed(const std::filesystem::path &file);

}  // namespace cambioip_test
