// Whoever writes makes the block his own first (MakeOwn): a shared one is copied, one that is too small
// replaced. Readers never look at the reference count. The empty text has no block.
#include "text/string.h"

#include "platform/code_page.h"
#include "platform/letter_case.h"
#include "runtime/default_code_page.h"
#include "runtime/diagnostics.h"

#include <algorithm>
#include <atomic>
#include <functional>
#include <limits>
#include <new>
#include <utility>

namespace tvut {

struct String::scBlock {
    std::atomic<std::uint32_t> references;
    std::size_t length;
    std::size_t capacity;

    char16_t* Characters() { return reinterpret_cast<char16_t*>(this + 1); }
};

String::String() noexcept : block_(nullptr), codePage_(UtilpCodePage()) {}

String::String(std::u16string_view text) : String(text, UtilpCodePage()) {}

String::String(std::u16string_view text, unsigned codePage) : block_(nullptr), codePage_(codePage) {
    Append(text);
}

String::String(const String& other) : block_(other.BlockForCopy()), codePage_(other.codePage_) {}

String::String(String&& other) noexcept
    : block_(std::exchange(other.block_, nullptr)), codePage_(other.codePage_),
      bufferUse_(std::exchange(other.bufferUse_, 0)) {}

String& String::operator=(const String& other) {
    if (this != &other)
        *this = String(other);
    return *this;
}

String& String::operator=(String&& other) noexcept {
    if (this != &other) {
        Adopt(std::exchange(other.block_, nullptr));
        codePage_ = other.codePage_;
        bufferUse_ = std::exchange(other.bufferUse_, 0);
    }
    return *this;
}

String::~String() {
    Release();
}

String String::FromAnsi(std::string_view text, unsigned codePage) {
    String result(std::u16string_view(), codePage);
    result.ReleaseBuffer(PlatformDecode(codePage, text, result.GetBuffer(text.size())));
    return result;
}

std::string String::ToAnsi() const {
    std::string bytes(PlatformEncodedSize(codePage_, View()), '\0');
    PlatformEncode(codePage_, View(), bytes.data(), bytes.size());
    return bytes;
}

std::u16string_view String::View() const noexcept {
    return {Characters(), block_ ? block_->length : 0};
}

const char16_t* String::Characters() const noexcept {
    return block_ ? block_->Characters() : u"";
}

String::clsCharacter& String::clsCharacter::operator=(char16_t c) {
    if (index_ >= string_.Length()) {
        clsDiagnosticLine()
            .Put(u"WRN: detected write to String::operator[] with index out of bounds")
            .Write();
        return *this;
    }
    string_.MakeOwn(string_.Length());
    string_.block_->Characters()[index_] = c;
    return *this;
}

void String::Append(std::u16string_view text) {
    if (text.empty())
        return;
    const std::size_t length = Length();
    const bool isPart =
        std::less_equal<>()(Characters(), text.data()) && std::less<>()(text.data(), Characters() + length);
    const String keeper(isPart ? *this : String());
    if (text.size() > std::numeric_limits<std::size_t>::max() / 8)
        throw std::bad_alloc();
    MakeOwn(length + text.size());
    std::copy(text.begin(), text.end(), block_->Characters() + length);
    block_->length = length + text.size();
    block_->Characters()[block_->length] = u'\0';
}

std::size_t String::Replace(std::u16string_view from, std::u16string_view to) {
    if (from.empty())
        return 0;
    const std::u16string_view text = View();
    std::size_t count = 0;
    std::size_t copied = 0;
    String result(std::u16string_view(), codePage_);
    for (std::size_t at; (at = text.find(from, copied)) != std::u16string_view::npos;
         copied = at + from.size()) {
        result.Append(text.substr(copied, at - copied));
        result.Append(to);
        ++count;
    }
    if (count == 0)
        return 0;
    result.Append(text.substr(copied));
    *this = std::move(result);
    return count;
}

char16_t* String::GetBuffer(std::size_t length) {
    const std::size_t before = Length();
    MakeOwn(std::max(length, before));
    std::fill(block_->Characters() + before, block_->Characters() + block_->capacity + 1, u'\0');
    block_->length = std::max(length, before);
    ++bufferUse_;
    return block_->Characters();
}

void String::ReleaseBuffer(std::size_t length) {
    if (bufferUse_ == 0 || !block_) {
        clsDiagnosticLine()
            .Put(u"WRN: String buffer released twice (usage=")
            .Put(bufferUse_)
            .Put(u")")
            .Write();
        return;
    }
    --bufferUse_;
    block_->length = std::min(length, block_->capacity);
    block_->Characters()[block_->length] = u'\0';
}

String::scBlock* String::Allocate(std::size_t length) {
    if (length > std::numeric_limits<std::size_t>::max() / 4)
        throw std::bad_alloc();
    auto* const block =
        static_cast<scBlock*>(::operator new(sizeof(scBlock) + (length + 1) * sizeof(char16_t)));
    new (&block->references) std::atomic<std::uint32_t>(1);
    block->length = 0;
    block->capacity = length;
    block->Characters()[0] = u'\0';
    return block;
}

// Shared, unless somebody is writing to this text's buffer.
String::scBlock* String::BlockForCopy() const {
    if (!block_)
        return nullptr;
    if (bufferUse_ != 0) {
        String own(View(), codePage_);
        return std::exchange(own.block_, nullptr);
    }
    block_->references.fetch_add(1, std::memory_order_relaxed);
    return block_;
}

void String::Release() noexcept {
    if (block_ && block_->references.fetch_sub(1, std::memory_order_acq_rel) == 1)
        ::operator delete(block_);
}

void String::Adopt(scBlock* block) noexcept {
    Release();
    block_ = block;
}

void String::MakeOwn(std::size_t length) {
    if (block_ && block_->capacity >= length && block_->references.load(std::memory_order_acquire) == 1)
        return;
    const std::size_t capacity =
        block_ && length > block_->length ? std::max(length, block_->length * 2) : length;
    scBlock* const own = Allocate(capacity);
    const std::u16string_view text = View();
    std::copy(text.begin(), text.end(), own->Characters());
    own->length = text.size();
    own->Characters()[own->length] = u'\0';
    Adopt(own);
}

int IString::Compare(const IString& a, const IString& b) noexcept {
    return PlatformCompareIgnoringCase(a.View(), b.View());
}

} // namespace tvut
