#pragma once

#include <concepts>
#include <stdexcept>
#include <string>

namespace tidewell {

// A failure that ends the running operation at the point of use. The application's general handler shows its
// text and the program goes on.
class TError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// A text that had to be a number or a boolean and is not.
class EConvertError : public TError {
  public:
    using TError::TError;
};

// An index beyond the end of a list.
class EListError : public TError {
  public:
    using TError::TError;
    template <std::integral TIndex>
    explicit EListError(TIndex index) : TError("List index out of bounds (" + std::to_string(index) + ")") {}
};

// A value that does not fit the range it was asked to be shown in.
class ERangeError : public TError {
  public:
    using TError::TError;
};

// A file that could not be read, written, renamed or removed. The text names the path and the system's
// reason.
class EInOutError : public TError {
  public:
    explicit EInOutError(const std::string& text) : TError(text), Cause(text) {}
    EInOutError(const std::string& text, const std::string& reason)
        : TError(text + ": " + reason), Cause(reason) {}
    // The system's reason alone, where it is known; else the whole text.
    const std::string& Reason() const { return Cause; }

  private:
    std::string Cause;
};

} // namespace tidewell
