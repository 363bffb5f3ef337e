#pragma once

#include <cstddef>
#include <cstdint>
#include <forward_list>
#include <string>
#include <string_view>
#include <vector>

namespace tidewell {

// The fields of a row or data line, split once, as GetRowField reads them one by one. It refers to the text,
// which must outlive it.
class TSplitLine {
  public:
    explicit TSplitLine(std::string_view line);
    // Stops after that many fields.
    TSplitLine(std::string_view line, std::size_t fields);
    TSplitLine(const TSplitLine&) = delete;
    TSplitLine& operator=(const TSplitLine&) = delete;

    std::size_t Count() const { return Fields.size(); }
    // Empty for an index beyond either end.
    std::string_view Field(std::int64_t index) const {
        return index >= 0 && static_cast<std::size_t>(index) < Fields.size()
                   ? Fields[static_cast<std::size_t>(index)]
                   : std::string_view();
    }

  private:
    std::vector<std::string_view> Fields;
    std::forward_list<std::string> Unquoted; // what quoted fields refer to
};

} // namespace tidewell
