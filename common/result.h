#pragma once
#include <utility>
#include <variant>

#include "common/problem.h"

namespace orvandel {

/// The value that an operation returned, or the problem that prevented it.
template <typename T>
class Result {
 public:
  Result(T value) : m_content(std::move(value)) {}
  Result(Problem problem) : m_content(std::move(problem)) {}

  explicit operator bool() const { return std::holds_alternative<T>(m_content); }
  /// The value. Requires success.
  T& operator*() { return std::get<T>(m_content); }
  T* operator->() { return &std::get<T>(m_content); }
  const T& operator*() const { return std::get<T>(m_content); }
  const T* operator->() const { return &std::get<T>(m_content); }
  /// The problem. Requires failure.
  const Problem& Error() const { return std::get<Problem>(m_content); }

 private:
  std::variant<T, Problem> m_content;
};

}  // namespace orvandel
