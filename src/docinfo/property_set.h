// Property sets of compound files ([MS-OLEPS]): values by number, and by name in those that users define.
#pragma once

#include "docinfo/fields.h"

#include <functional>
#include <vector>

namespace tvut {

// The first half of a set's identifier, which tells the known ones apart.
enum class PropertySetKind : std::uint32_t {
    summary = 0xF29F85E0,
    documentSummary = 0xD5CDD502,
    userDefined = 0xD5CDD505,
};

// A value as it is shown, and what else it is.
struct scPropertyValue {
    std::u16string text; // nothing for kinds that are not shown
    std::optional<std::int64_t> number;
    std::optional<scDocDate> date;
};

// Reads what is asked for. All throw clsDocDamage for what lies beyond the stream, std::bad_alloc.
class clsPropertySet {
  public:
    // The set of this kind in a stream, which must live as long; nothing when there is none.
    static std::optional<clsPropertySet> Find(clsRandomSource& stream, PropertySetKind kind);

    scPropertyValue Value(std::uint32_t property);
    // The values that have names, in the order of their names in the set.
    void EachNamed(const std::function<void(std::u16string_view name, const scPropertyValue& value)>& visit);

  private:
    struct scPlace {
        std::uint32_t property, offset;
    };

    clsPropertySet(clsRandomSource& stream, std::uint64_t start);
    std::optional<std::uint64_t> PositionOf(std::uint32_t property) const;
    scPropertyValue ValueAt(std::uint64_t position);
    std::u16string TextAt(std::uint64_t position, std::uint64_t bytes, unsigned codePage);

    clsFields fields_;
    std::uint64_t start_;
    std::uint64_t streamSize_;
    std::vector<scPlace> places_; // by property
    unsigned codePage_;
    std::size_t textLeft_ = 4 * 1024 * 1024; // bytes that are read as text at most
};

} // namespace tvut
