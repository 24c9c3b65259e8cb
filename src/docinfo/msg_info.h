// Mails in compound files ([MS-OXMSG]): a stream of properties of fixed size, and a stream for each text.
#pragma once

#include "docinfo/compound_file.h"

namespace tvut {

class clsDocInfo;
class clsFirstDamage;

class clsMessageReader {
  public:
    explicit clsMessageReader(clsCompoundFile& file) : file_(file) {}

    // Notes a stream of the root if it is one that is read. Throws std::bad_alloc.
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
    std::u16string Text(std::uint16_t property);
    std::u16string Sender();

    clsCompoundFile& file_;
    std::optional<scCompoundEntry> fixed_;
    std::vector<scText> texts_;
    unsigned codePage_ = 1252;
};

} // namespace tvut
