#include "platform/jet/text.h"

#include "platform/ansi_code_page.h"

namespace platform::jet {
namespace {

/// First weights of the groups of characters, in their order. Weights are 24 bits; 0 ends a level.
constexpr char32_t kPunctuation = 0x000100;
constexpr char32_t kSymbols = 0x000200;
constexpr char32_t kDigits = 0x012000;
constexpr char32_t kLatinLetters = 0x013000;
constexpr char32_t kOtherCharacters = 0x014000;

/// ASCII punctuation in its order: that of its codes, but with + < = > last.
constexpr std::string_view kPunctuationOrder = " !\"#$%&'()*,-./:;?@[\\]^_`{|}~+<=>";

/// The letters without accents of U+00C0 to U+017F, one or two for each: "." stands for none.
constexpr std::string_view kBaseLetters =
    "a a a a a a aec e e e e i i i i d n o o o o o . o u u u u y thss"
    "a a a a a a aec e e e e i i i i d n o o o o o . o u u u u y thy "
    "a a a a a a c c c c c c c c d d d d e e e e e e e e e e g g g g g g g g h h h h "
    "i i i i i i i i i i ijijj j k k k l l l l l l l l l l n n n n n n n n n o o o o o o oeoe"
    "r r r r r r s s s s s s s s t t t t t t u u u u u u u u u u u u w w y y y z z z z z z s ";
constexpr std::size_t kFirstAccented = 0xC0;
constexpr std::size_t kPastAccented = 0x180;
static_assert(kBaseLetters.size() == 2 * (kPastAccented - kFirstAccented));

bool Between(char32_t character, char32_t first, char32_t last)
{
    return character >= first && character <= last;
}

/// The base letters of an accented or joined Latin letter; empty for any other character.
std::string_view BaseLetters(char32_t character)
{
    if (character < kFirstAccented || character >= kPastAccented)
        return {};
    const std::string_view entry = kBaseLetters.substr(2 * (character - kFirstAccented), 2);
    return entry[0] == '.' ? std::string_view{} : entry.substr(0, entry[1] == ' ' ? 1 : 2);
}

/// Greek and Cyrillic letters in lower case; Latin ones have a table of their own.
char32_t WithoutCase(char32_t character)
{
    if (Between(character, 0x391, 0x3A9) || Between(character, 0x410, 0x42F))
        return character + 0x20;
    return Between(character, 0x400, 0x40F) ? character + 0x50 : character;
}

bool IsSymbol(char32_t character)
{
    return Between(character, 0xA0, 0xBF) || character == 0xD7 || character == 0xF7 ||
           Between(character, 0x2000, 0x2BFF);
}

/// The weight of a character that is no accented Latin letter; 0 for one that does not count.
char32_t WeightOf(char32_t character)
{
    const std::size_t punctuation =
        character < 0x80 ? kPunctuationOrder.find(static_cast<char>(character)) : std::string_view::npos;
    if (punctuation != std::string_view::npos)
        return kPunctuation + static_cast<char32_t>(punctuation);
    if (Between(character, '0', '9'))
        return kDigits + character;
    if (Between(character, 'A', 'Z'))
        return kLatinLetters + (character - 'A' + 'a');
    if (Between(character, 'a', 'z'))
        return kLatinLetters + character;
    if (character < 0xA0)
        return 0;
    return IsSymbol(character) ? kSymbols + character : kOtherCharacters + WithoutCase(character);
}

void AppendWeight(std::string& key, char32_t weight)
{
    for (const int shift : {16, 8, 0})
        key.push_back(static_cast<char>(weight >> shift));
}

/// Builds the three levels of a key side by side.
class KeyBuilder {
public:
    explicit KeyBuilder(Format format) : passesOver_(format == Format::kJet4) {}

    void Add(char32_t character)
    {
        if (passesOver_ && (character == '-' || character == '\'')) {
            AppendWeight(passedOver_, letterCount_ + 1);
            AppendWeight(passedOver_, character);
        } else if (const std::string_view letters = BaseLetters(character); letters.empty()) {
            AddLetter(WeightOf(character), false);
        } else {
            for (const char letter : letters)
                AddLetter(WeightOf(static_cast<char32_t>(letter)), letters.size() == 1);
        }
    }

    [[nodiscard]] std::string Key() const
    {
        std::string key = letters_;
        AppendWeight(key, 0);
        key += accents_;
        AppendWeight(key, 0);
        return key + passedOver_;
    }

private:
    void AddLetter(char32_t weight, bool accented)
    {
        if (weight == 0)
            return;
        AppendWeight(letters_, weight);
        ++letterCount_;
        if (accented)
            AppendWeight(accents_, letterCount_);
    }

    bool passesOver_;
    std::string letters_;
    std::string accents_;     // the places of accented letters, counted from 1
    std::string passedOver_;  // hyphens and apostrophes with their places
    char32_t letterCount_ = 0;
};

}  // namespace

std::string TextSortKey(std::string_view text, Format format)
{
    KeyBuilder builder(format);
    while (!text.empty())
        builder.Add(TakeCharacter(text));
    return builder.Key();
}

}  // namespace platform::jet
