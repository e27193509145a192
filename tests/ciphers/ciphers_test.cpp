// dsEncrypt and d1enc against the square table itself: each character under each key character,
// what is outside the alphabet, the turns of the key, the 16-bit lengths.

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <kvarta16/ciphers/alphabets.h>
#include <kvarta16/ciphers/d1enc.h>
#include <kvarta16/ciphers/dsEncrypt.h>

#include "frame/frame_support.h"

namespace kvarta16 {
namespace {

using frame_tests::failure_of;
using frame_tests::Random;
using frame_tests::show;

template <class Cipher>
constexpr bool is_dsEncrypt = std::is_same_v<Cipher, dsEncrypt>;

template <class Cipher>
String alphabet_of() {
    return is_dsEncrypt<Cipher> ? String(ciphers::order_of_dsEncrypt) + u"\r\n\""
                                : u"\"" + String(ciphers::order_of_d1enc) + u"\r\n";
}

// ---- The long way -------------------------------------------------------------------------------

// The rows of the table as texts, searched from the first to the last.
template <class Cipher>
class LongWay {
  public:
    LongWay() : alphabet_(alphabet_of<Cipher>()) {
        String row = alphabet_;
        for (std::size_t i = 0; i < alphabet_.size(); ++i) {
            rows_.push_back(row);
            row = row.substr(1) + row.substr(0, 1);
        }
    }

    void KeyString(StringView value) { key_ = value; }

    [[nodiscard]] String Encrypt(StringView mstext) const {
        const Integer text_length = wrap16(static_cast<std::int64_t>(mstext.size()));
        const Integer key_length = wrap16(static_cast<std::int64_t>(key_.size()));
        String output;
        Integer key_position = 1;
        for (Long i = 1; i <= text_length; ++i) {
            const String c = substring(mstext, i, 1);
            append(output, c, substring(key_, key_position, 1));
            key_position = static_cast<Integer>(key_position + 1);
            if (key_position > key_length) {
                key_position = 1;
            }
        }
        return output;
    }

  private:
    void append(String& output, const String& c, const String& k) const {
        const Long p = position_of(alphabet_, c);
        if (is_dsEncrypt<Cipher> && p == 0) {
            output += c;
            return;
        }
        for (const String& row : rows_) {
            if (substring(row, p, 1) == k) {
                output += substring(row, 1, 1);
                return;
            }
        }
        if (is_dsEncrypt<Cipher>) {
            output += c;
        }
    }

    String alphabet_;
    String key_;
    std::vector<String> rows_;
};

// The text, or "!" and the number of the failure.
template <class Cipher>
std::string enciphered(const Cipher& cipher, StringView text) {
    try {
        return show(cipher.Encrypt(text));
    } catch (const Failure& failure) {
        return "!" + std::to_string(failure.number());
    }
}

template <class Cipher>
class Ciphers : public testing::Test {
  public:
    void expect_the_long_way(StringView text, StringView key) {
        cipher_.KeyString(key);
        long_way_.KeyString(key);
        ASSERT_EQ(enciphered(cipher_, text), enciphered(long_way_, text))
            << show(text.substr(0, 40)) << " by " << show(key.substr(0, 40));
    }

    Cipher cipher_;
    LongWay<Cipher> long_way_;
};

using BothCiphers = testing::Types<dsEncrypt, d1enc>;
TYPED_TEST_SUITE(Ciphers, BothCiphers);

TYPED_TEST(Ciphers, EachCharacterUnderEachKeyCharacter) {
    const String alphabet = alphabet_of<TypeParam>();
    ASSERT_EQ(alphabet.size(), 115U);
    for (const char16_t text : alphabet) {
        for (const char16_t key : alphabet) {
            ASSERT_NO_FATAL_FAILURE(this->expect_the_long_way({&text, 1}, {&key, 1}));
            EXPECT_EQ(this->cipher_.Encrypt(this->cipher_.Encrypt({&text, 1})), String(1, text));
        }
    }
}

TYPED_TEST(Ciphers, EveryCodeUnitAsTextAndAsKey) {
    for (std::uint32_t code = 0; code <= 0xFFFF; ++code) {
        const String text(1, static_cast<char16_t>(code));
        ASSERT_NO_FATAL_FAILURE(this->expect_the_long_way(text, u"A"));
        ASSERT_NO_FATAL_FAILURE(this->expect_the_long_way(u"A", text));
    }
    ASSERT_NO_FATAL_FAILURE(this->expect_the_long_way(u"\t", u""));
    ASSERT_NO_FATAL_FAILURE(this->expect_the_long_way(u"\t", u"\t"));
}

TYPED_TEST(Ciphers, RandomTextsAndKeys) {
    const String alphabet = alphabet_of<TypeParam>();
    Random random(115);
    const auto text_of = [&](std::int64_t length, int outside) {
        String text;
        for (; length > 0; --length) {
            text += random.chance(outside) ? u"\té€\0"[random.bits() % 4]
                                           : alphabet[random.bits() % alphabet.size()];
        }
        return text;
    };
    for (int i = 0; i < 3000; ++i) {
        const String text = text_of(random.between(0, 40), is_dsEncrypt<TypeParam> ? 10 : 1);
        const String key = text_of(random.between(0, 10), 10);
        ASSERT_NO_FATAL_FAILURE(this->expect_the_long_way(text, key));
    }
    for (int i = 0; i < 3000; ++i) {
        const String text = text_of(random.between(0, 40), 0);
        this->cipher_.KeyString(text_of(random.between(1, 60), 0));
        ASSERT_EQ(this->cipher_.Encrypt(this->cipher_.Encrypt(text)), text);
    }
}

TYPED_TEST(Ciphers, TheSameCharacterGivesTheFirstOfTheAlphabet) {
    const String alphabet = alphabet_of<TypeParam>();
    for (const char16_t unit : alphabet) {
        this->cipher_.KeyString(String{unit, u'x'});
        EXPECT_EQ(this->cipher_.Encrypt(String(1, unit)), alphabet.substr(0, 1));
    }
}

TYPED_TEST(Ciphers, EveryTextBeginsWithTheKeysFirstCharacter) {
    this->cipher_.KeyString(u"abc");
    const String one = this->cipher_.Encrypt(u"x");
    EXPECT_EQ(this->cipher_.Encrypt(u"xyz").substr(0, 1), one);
    EXPECT_EQ(this->cipher_.Encrypt(u"x"), one);
    this->cipher_.KeyString(u"abcdefgh");  // of a longer key the first characters
    EXPECT_EQ(this->cipher_.Encrypt(u"x"), one);
    this->cipher_.KeyString(u"b");
    EXPECT_NE(this->cipher_.Encrypt(u"x"), one);
    EXPECT_EQ(this->cipher_.Encrypt(u""), u"");
}

TYPED_TEST(Ciphers, LengthsAreKeptIn16Bits) {
    struct Case {
        std::size_t length;
        std::size_t enciphered;
    };
    constexpr Case cases[] = {{32766, 32766}, {32767, 32767}, {32768, 0}, {32769, 0}, {65535, 0},
                              {65536, 0},     {65537, 1},     {65540, 4}, {98304, 0}, {131075, 3}};
    this->cipher_.KeyString(u"klucz");
    for (const Case& test : cases) {
        SCOPED_TRACE(test.length);
        const String all = this->cipher_.Encrypt(String(test.enciphered, u'a'));
        EXPECT_TRUE(this->cipher_.Encrypt(String(test.length, u'a')) == all);
        EXPECT_EQ(all.size(), test.enciphered);
    }
    // What is not reached cannot fail either.
    EXPECT_EQ(this->cipher_.Encrypt(String(40'000, u'\t')), u"");
}

TYPED_TEST(Ciphers, TheLengthOfTheKeyToo) {
    for (const std::size_t size : {1U, 32767U, 32768U, 40000U, 65535U, 65536U, 65537U, 65539U}) {
        SCOPED_TRACE(size);
        String key;
        while (key.size() < size) {
            key += u"abcde";
        }
        key.resize(size);
        ASSERT_NO_FATAL_FAILURE(this->expect_the_long_way(u"Zażółć gęślą jaźń", key));
    }
}

TYPED_TEST(Ciphers, Interface) {
    using Table = ClassTable<TypeParam>;
    EXPECT_EQ(Table::header.instancing, Instancing::Creatable);
    ASSERT_EQ(Table::members.size(), 2U);
    const MemberInfo& key = Table::members[0];
    EXPECT_EQ(key.name, u"KeyString");
    EXPECT_EQ(key.kind, MemberKind::PropertyLet);
    EXPECT_EQ(key.result, TypeName::None);
    ASSERT_EQ(key.parameter_count, 1U);
    EXPECT_EQ(key.parameters()[0].type, TypeName::String);
    EXPECT_EQ(key.parameters()[0].passing, Passing::ByReference);
    const MemberInfo& encrypt = Table::members[1];
    EXPECT_EQ(encrypt.name, u"Encrypt");
    EXPECT_EQ(encrypt.kind, MemberKind::Method);
    EXPECT_EQ(encrypt.result, TypeName::String);
    ASSERT_EQ(encrypt.parameter_count, 1U);
    EXPECT_EQ(encrypt.parameters()[0].name, u"mstext");
    EXPECT_EQ(encrypt.parameters()[0].type, TypeName::String);
    EXPECT_EQ(encrypt.parameters()[0].passing, Passing::ByReference);

    TypeParam object;
    Arguments word = {u"klucz"};
    EXPECT_EQ(invoke(key, &object, word), Variant());
    EXPECT_EQ(word, (Arguments{u"klucz"}));
    String text = u"Zażółć";
    Arguments reference = {Variant::reference(text)};
    Arguments secret = {invoke(encrypt, &object, reference)};
    EXPECT_EQ(text, u"Zażółć");
    EXPECT_NE(secret[0], Variant(text));
    EXPECT_EQ(invoke(encrypt, &object, secret), Variant(text));
}

// ---- Where the sisters differ -------------------------------------------------------------------

TEST(DsEncrypt, LeavesInPlaceWhatIsOutsideTheAlphabet) {
    dsEncrypt cipher;
    EXPECT_EQ(cipher.Encrypt(u"a\tb\""), u"a\tb\"");  // no key yet
    cipher.KeyString(u"xyz");
    const String whole = cipher.Encrypt(u"a-bcd");
    String with_tab = whole;
    with_tab[1] = u'\t';
    EXPECT_EQ(cipher.Encrypt(u"a\tbcd"), with_tab);
    cipher.KeyString(u"x\tz");
    String every_third = whole;
    every_third[1] = u'-';
    every_third[4] = u'd';
    EXPECT_EQ(cipher.Encrypt(u"a-bcd"), every_third);
    cipher.KeyString(u"");
    EXPECT_EQ(cipher.Encrypt(u"a\tb\""), u"a\tb\"");
}

TEST(D1enc, RefusesATextAndSkipsAKeyOutsideTheAlphabet) {
    d1enc cipher;
    EXPECT_EQ(cipher.Encrypt(u"abc"), u"");  // no key yet
    EXPECT_EQ(failure_of([&] { return cipher.Encrypt(u"ab\t"); }), 5);
    cipher.KeyString(u"xyz");
    const String whole = cipher.Encrypt(u"a-bcd");
    EXPECT_EQ(failure_of([&] { return cipher.Encrypt(u"a\tbcd"); }), 5);
    EXPECT_EQ(cipher.Encrypt(u"a-bcd"), whole);
    cipher.KeyString(u"x\tz");
    EXPECT_EQ(cipher.Encrypt(u"a-bcd"), String({whole[0], whole[2], whole[3]}));
    EXPECT_EQ(failure_of([&] { return cipher.Encrypt(u"a\t"); }), 5);
    cipher.KeyString(u"\t");
    EXPECT_EQ(cipher.Encrypt(u"abc"), u"");
    cipher.KeyString(u"");
    EXPECT_EQ(cipher.Encrypt(u"abc"), u"");
    EXPECT_EQ(cipher.Encrypt(u""), u"");
    EXPECT_EQ(failure_of([&] { return cipher.Encrypt(u"\t"); }), 5);
}

TEST(D1enc, TellsAFailureThatLeavesTheArgumentsAsTheyAre) {
    d1enc cipher;
    Arguments arguments = {u"a\tb"};
    EXPECT_EQ(failure_of([&] { return invoke(ClassTable<d1enc>::members[1], &cipher, arguments); }),
              5);
    EXPECT_EQ(arguments, (Arguments{u"a\tb"}));
}

TEST(Sisters, HaveTheirOwnNamesAndIdentifiers) {
    EXPECT_EQ(ClassTable<dsEncrypt>::header.name, u"dsEncrypt");
    EXPECT_EQ(ClassTable<dsEncrypt>::header.interface_id, "89F7DF17-7B2C-4056-97CB-11407F49E97C");
    EXPECT_EQ(ClassTable<dsEncrypt>::header.class_id, "D281E243-86E6-486A-9C34-F898AF233E16");
    EXPECT_EQ(ClassTable<d1enc>::header.name, u"d1enc");
    EXPECT_EQ(ClassTable<d1enc>::header.interface_id, "E09AAF7D-0CAE-4963-B9F8-E03C7BA756A1");
    EXPECT_EQ(ClassTable<d1enc>::header.class_id, "5587CFA7-7844-4FB3-9775-920EF092852E");
    dsEncrypt ds;
    d1enc d1;
    ds.KeyString(u"klucz");
    d1.KeyString(u"klucz");
    EXPECT_NE(ds.Encrypt(u"Zażółć"), d1.Encrypt(u"Zażółć"));
}

}  // namespace
}  // namespace kvarta16
