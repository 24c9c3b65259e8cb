// Mails in compound files ([MS-OXMSG]): a stream of properties of fixed size, a stream for each text,
// and a storage of names for properties that have no number of their own.
#pragma once

#include "docinfo/compound_file.h"

namespace tvut {

class clsDocInfo;
class clsFirstDamage;

class clsMessageReader {
  public:
    explicit clsMessageReader(clsCompoundFile& file) : file_(file) {}

    // Notes a stream or a storage of the root if it is one that is read. Throws std::bad_alloc.
    void Look(const scCompoundEntry& entry);

    // Adds what the noted streams hold. Throws what the compound file does; damage of a single text goes to
    // `damage`.
    void Read(clsDocInfo& info, clsFirstDamage& damage);

  private:
    struct scText {
        std::uint16_t property;
        bool isWide;
        scCompoundEntry entry;
    };

    void ReadFixed(clsDocInfo& info);
    void ReadKeywords(clsDocInfo& info);
    std::optional<std::uint16_t> KeywordsProperty();
    std::u16string Text(std::uint16_t property);
    std::u16string TextIn(const scCompoundEntry& entry, bool isWide);
    std::u16string Sender();

    clsCompoundFile& file_;
    std::optional<scCompoundEntry> fixed_, names_;
    std::vector<scText> texts_;
    unsigned codePage_ = 1252;
};

} // namespace tvut
