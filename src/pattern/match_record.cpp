#include "pattern/match_record.h"

#include <cstring>

namespace zenfo {

void MatchRecord::set_replacement(const char* replacement) {
  set_replacement_bytes(replacement != nullptr ? std::string_view(replacement)
                                               : std::string_view());
}

void MatchRecord::set_replacement_bytes(std::string_view replacement) {
  replacement_.reset();
  replacement_length_ = 0;
  if (replacement.empty()) return;
  // Zero-filled: the slack after the text is part of the contract.
  replacement_.reset(new char[replacement.size() + kReplacementSlack]());
  std::memcpy(replacement_.get(), replacement.data(), replacement.size());
  replacement_length_ = static_cast<uint32_t>(replacement.size());
}

}  // namespace zenfo
