// A number for a name that is the same on every machine.
#pragma once

#include <cstdint>
#include <string_view>

/// FNV-1a of 64 bits, mixed once more so that each bit of the result depends on all of the name.
constexpr std::uint64_t NameHash(std::string_view name) {
  std::uint64_t hash = 0xcbf29ce484222325;
  for (const char c : name) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001b3;
  hash = (hash ^ hash >> 32) * 0xd6e8feb86659fd93;
  hash = (hash ^ hash >> 32) * 0xd6e8feb86659fd93;
  return hash ^ hash >> 32;
}
