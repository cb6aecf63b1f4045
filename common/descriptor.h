#pragma once
#include <unistd.h>

#include <utility>

namespace orvandel {

/// Owns a file descriptor and closes it on destruction.
class Descriptor {
 public:
  /// @param nDescriptor -1 for none.
  explicit Descriptor(int nDescriptor) : m_nDescriptor(nDescriptor) {}
  ~Descriptor() {
    if (m_nDescriptor != -1) close(m_nDescriptor);
  }
  Descriptor(Descriptor&& other) noexcept : m_nDescriptor(std::exchange(other.m_nDescriptor, -1)) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  int Get() const { return m_nDescriptor; }
  /// Closes it. @return false on failure; a full disk may be reported only here.
  bool Close() { return close(std::exchange(m_nDescriptor, -1)) == 0; }
  /// Transfers ownership to the caller.
  int Release() { return std::exchange(m_nDescriptor, -1); }

 private:
  int m_nDescriptor;
};

}  // namespace orvandel
