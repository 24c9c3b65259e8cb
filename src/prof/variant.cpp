// Into bytes: a VARIANT is walked by recursion, whose depth has a limit, and everything by reference is
// stored as what it refers to. Out of bytes: ProfpReadVariant calls a sink, which builds the VARIANT from the
// outside in. Each array is in the VARIANT around it before its elements come, so that one VariantClear frees
// whatever there is when a later part fails.
#include "prof/variant.h"

#include "platform/exception.h"
#include "prof/variant_layout.h"
#include "runtime/diagnostics.h"

#include <array>
#include <cstring>
#include <new>

namespace tvut {

static_assert(variantType::bstr == VT_BSTR && variantType::dispatch == VT_DISPATCH &&
              variantType::variant == VT_VARIANT && variantType::unknown == VT_UNKNOWN &&
              variantType::decimal == VT_DECIMAL && variantType::array == VT_ARRAY);

namespace {

constexpr std::size_t decimalHead = 2; // of its 16 bytes the first two are the variant's type
constexpr std::size_t storedDecimal = sizeof(DECIMAL) - decimalHead;

bool IsInterface(VARTYPE type) {
    return type == VT_UNKNOWN || type == VT_DISPATCH;
}

// ---- From a VARIANT to its bytes ----------------------------------------------------------------

class clsVariantWalk {
  public:
    std::string Bytes(const VARIANT& value) {
        Value(value, 0);
        return writer_.Bytes();
    }

  private:
    [[noreturn]] static void Refuse(VARTYPE type);
    void Value(const VARIANT& value, std::size_t depth);
    void Reference(const VARIANT& value, std::size_t depth);
    void Plain(VARTYPE type, const void* memory);
    void Text(BSTR text);
    void Array(VARTYPE elementType, const SAFEARRAY* array, std::size_t depth);
    void Elements(VARTYPE type, const SAFEARRAY& array, std::size_t count, std::size_t depth);

    clsVariantWriter writer_;
};

void clsVariantWalk::Refuse(VARTYPE type) {
    clsDiagnosticLine().Put(u"WRN: a variant of type ").Put(type).Put(u" cannot be stored").Write();
    throw clsException("variant cannot be stored");
}

void clsVariantWalk::Value(const VARIANT& value, std::size_t depth) {
    const VARTYPE type = V_VT(&value);
    if (type & VT_BYREF)
        return Reference(value, depth);
    if (!(type & VT_ARRAY) && type != VT_BSTR && !ProfpVariantSize(type))
        Refuse(type);
    writer_.Type(type);
    if (type & VT_ARRAY)
        Array(type & VT_TYPEMASK, V_ARRAY(&value), depth);
    else if (type == VT_BSTR)
        Text(V_BSTR(&value));
    else
        Plain(type, type == VT_DECIMAL ? static_cast<const void*>(&value) : &V_I1(&value));
}

// Counts as a level of its own: an array may refer to itself.
void clsVariantWalk::Reference(const VARIANT& value, std::size_t depth) {
    if (!V_BYREF(&value) || depth == deepestVariant)
        Refuse(V_VT(&value));
    clsVariant copy;
    const HRESULT result = VariantCopyInd(&copy.Get(), const_cast<VARIANT*>(&value));
    if (result == E_OUTOFMEMORY)
        throw std::bad_alloc();
    if (FAILED(result) || (V_VT(&copy.Get()) & VT_BYREF))
        Refuse(V_VT(&value));
    Value(copy.Get(), depth + 1);
}

void clsVariantWalk::Plain(VARTYPE type, const void* memory) {
    if (IsInterface(type)) {
        void* pointer;
        std::memcpy(&pointer, memory, sizeof pointer);
        if (pointer)
            Refuse(type);
    }
    const std::size_t head = type == VT_DECIMAL ? decimalHead : 0;
    const std::string_view bytes(static_cast<const char*>(memory) + head, *ProfpVariantSize(type));
    if (type == VT_DECIMAL && !ProfpIsVariantDecimal(bytes))
        Refuse(type);
    writer_.Plain(bytes);
}

void clsVariantWalk::Text(BSTR text) {
    if (!text)
        return writer_.Text(std::nullopt);
    writer_.Text(std::string_view(reinterpret_cast<const char*>(text), SysStringByteLen(text)));
}

void clsVariantWalk::Array(VARTYPE elementType, const SAFEARRAY* array, std::size_t depth) {
    if (!array)
        return writer_.NoArray();
    if (array->cDims > mostVariantDimensions || depth == deepestVariant)
        Refuse(elementType | VT_ARRAY);
    std::array<scVariantBounds, mostVariantDimensions> dimensions;
    std::uint64_t count = 1;
    for (std::size_t i = 0; i < array->cDims; ++i) {
        const SAFEARRAYBOUND& bounds = array->rgsabound[array->cDims - 1 - i]; // the last one comes first
        dimensions[i] = {bounds.cElements, bounds.lLbound};
        count *= bounds.cElements;
        if (count > mostVariantElements)
            Refuse(elementType | VT_ARRAY);
    }
    if (count != 0 && !array->pvData)
        Refuse(elementType | VT_ARRAY);
    writer_.Array({dimensions.data(), array->cDims});
    Elements(elementType, *array, static_cast<std::size_t>(count), depth);
    writer_.EndArray();
}

// Elements that are not as wide as their type say that the type is not theirs.
void clsVariantWalk::Elements(VARTYPE type, const SAFEARRAY& array, std::size_t count, std::size_t depth) {
    const char* element = static_cast<const char*>(array.pvData);
    const auto size = ProfpVariantSize(type);
    if (size && *size == array.cbElements && !IsInterface(type))
        return writer_.Plain({element, count * *size});
    for (; count != 0; --count, element += array.cbElements) {
        if (type == VT_VARIANT && array.cbElements == sizeof(VARIANT))
            Value(*reinterpret_cast<const VARIANT*>(element), depth + 1);
        else if (type == VT_BSTR && array.cbElements == sizeof(BSTR))
            Text(*reinterpret_cast<const BSTR*>(element));
        else if ((type == VT_DECIMAL && array.cbElements == sizeof(DECIMAL)) ||
                 (IsInterface(type) && array.cbElements == sizeof(void*)))
            Plain(type, element);
        else
            Refuse(type | VT_ARRAY);
    }
}

// ---- From bytes to a VARIANT --------------------------------------------------------------------

// Every array is in its place as soon as it is made, so the root owns whatever has been built when the
// bytes turn out to be bad.
class clsVariantBuilder final : public IclsVariantSink {
  public:
    explicit clsVariantBuilder(VARIANT& root) : root_(root) {}
    void Type(std::uint16_t type) override;
    void Plain(std::string_view bytes) override;
    void Text(std::optional<std::string_view> bytes) override;
    void Array(std::span<const scVariantBounds> dimensions) override;
    void NoArray() override { V_ARRAY(&Put()) = nullptr; }
    void EndArray() override { --depth_; }

  private:
    struct scFrame {
        VARTYPE elementType;
        char* next; // element
    };

    // Sets the type of the variant that waits for its contents. Only with contents: a type alone would
    // make whoever frees the variant follow a pointer that is not there.
    VARIANT& Put();
    void* NextElement(std::size_t size);
    void PlainElements(std::string_view bytes);

    VARIANT& root_;
    VARIANT* waiting_ = nullptr;
    VARTYPE type_ = VT_EMPTY;
    std::array<scFrame, deepestVariant> frames_;
    std::size_t depth_ = 0;
};

void clsVariantBuilder::Type(std::uint16_t type) {
    waiting_ = depth_ == 0 ? &root_ : static_cast<VARIANT*>(NextElement(sizeof(VARIANT)));
    type_ = type;
}

VARIANT& clsVariantBuilder::Put() {
    V_VT(waiting_) = type_;
    return *std::exchange(waiting_, nullptr);
}

void* clsVariantBuilder::NextElement(std::size_t size) {
    return std::exchange(frames_[depth_ - 1].next, frames_[depth_ - 1].next + size);
}

void clsVariantBuilder::Plain(std::string_view bytes) {
    if (!waiting_)
        return PlainElements(bytes);
    if (IsInterface(type_)) {
        V_UNKNOWN(&Put()) = nullptr;
    } else if (type_ == VT_DECIMAL) {
        std::memcpy(reinterpret_cast<char*>(waiting_) + decimalHead, bytes.data(), bytes.size());
        Put();
    } else {
        std::memcpy(&V_I1(&Put()), bytes.data(), bytes.size());
    }
}

// A new array's elements are zero, so null pointers are there already.
void clsVariantBuilder::PlainElements(std::string_view bytes) {
    const scFrame& array = frames_[depth_ - 1];
    if (IsInterface(array.elementType) || bytes.empty())
        return;
    if (array.elementType != VT_DECIMAL) {
        std::memcpy(array.next, bytes.data(), bytes.size());
        return;
    }
    for (; !bytes.empty(); bytes.remove_prefix(storedDecimal))
        std::memcpy(static_cast<char*>(NextElement(sizeof(DECIMAL))) + decimalHead, bytes.data(),
                    storedDecimal);
}

void clsVariantBuilder::Text(std::optional<std::string_view> bytes) {
    BSTR text = nullptr;
    if (bytes) {
        text = SysAllocStringByteLen(bytes->data(), static_cast<UINT>(bytes->size()));
        if (!text)
            throw std::bad_alloc();
    }
    if (waiting_)
        V_BSTR(&Put()) = text;
    else
        *static_cast<BSTR*>(NextElement(sizeof(BSTR))) = text;
}

void clsVariantBuilder::Array(std::span<const scVariantBounds> dimensions) {
    std::array<SAFEARRAYBOUND, mostVariantDimensions> bounds;
    for (std::size_t i = 0; i < dimensions.size(); ++i)
        bounds[i] = {dimensions[i].count, dimensions[i].lowest};
    const VARTYPE elementType = type_ & VT_TYPEMASK;
    SAFEARRAY* const array =
        SafeArrayCreate(elementType, static_cast<UINT>(dimensions.size()), bounds.data());
    if (!array)
        throw std::bad_alloc();
    V_ARRAY(&Put()) = array;
    frames_[depth_++] = {elementType, static_cast<char*>(array->pvData)};
}

} // namespace

std::string ProfpStoreVariant(const VARIANT& value) {
    return clsVariantWalk().Bytes(value);
}

void ProfpLoadVariant(std::string_view bytes, clsVariant& value) {
    clsVariantBuilder builder(value.Get());
    ProfpReadVariant(bytes, builder);
}

} // namespace tvut
