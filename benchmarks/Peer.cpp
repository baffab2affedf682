#include "benchmarks/Peer.h"

#include <algorithm>
#include <libedata-book/libedata-book.h>
#include <stdexcept>

namespace benchmarks {

namespace {

struct GlibDelete {
    void operator()(void* object) const { g_object_unref(object); }
};
struct GlibFree {
    void operator()(void* memory) const { g_free(memory); }
};
using Card = std::unique_ptr<EContact, GlibDelete>;

std::string utf8Of(const std::u16string& text) {
    const std::unique_ptr<gchar, GlibFree> utf8(g_utf16_to_utf8(
        reinterpret_cast<const gunichar2*>(text.data()), static_cast<glong>(text.size()), nullptr, nullptr, nullptr));
    if (utf8 == nullptr) throw std::runtime_error("a text is not UTF-16");
    return utf8.get();
}

/// Throws unless it went well.
void require(gboolean done, GError* error) {
    if (done != FALSE) return;
    const std::string why = error == nullptr ? "the peer has failed" : error->message;
    g_clear_error(&error);
    throw std::runtime_error(why);
}

std::string identifierOf(int number) {
    return "person-" + std::to_string(number);
}

Card cardOf(int number, const Person& person) {
    Card card(e_contact_new());
    const auto set = [&](EContactField field, const std::string& text) {
        if (!text.empty()) e_contact_set(card.get(), field, text.c_str());
    };
    set(E_CONTACT_UID, identifierOf(number));
    set(E_CONTACT_FULL_NAME, utf8Of(person.name));
    set(E_CONTACT_FILE_AS, utf8Of(person.name));
    set(E_CONTACT_PHONE_MOBILE, utf8Of(person.mobile));
    set(E_CONTACT_PHONE_HOME, utf8Of(person.home));
    set(E_CONTACT_CATEGORIES, utf8Of(person.group));
    return card;
}

/// The question in the peer's own language.
std::unique_ptr<gchar, GlibFree> questionOf(EContactField field, EBookQueryTest test, const std::u16string& text) {
    EBookQuery* query = e_book_query_field_test(field, test, utf8Of(text).c_str());
    std::unique_ptr<gchar, GlibFree> question(e_book_query_to_string(query));
    e_book_query_unref(query);
    return question;
}

int namesThat(EBookSqlite* book, EBookQueryTest test, const std::u16string& text) {
    GSList* found = nullptr;
    GError* error = nullptr;
    const auto question = questionOf(E_CONTACT_FULL_NAME, test, text);
    require(e_book_sqlite_search_uids(book, question.get(), &found, nullptr, &error), error);
    const int count = static_cast<int>(g_slist_length(found));
    g_slist_free_full(found, g_free);
    return count;
}

}  // namespace

void PeerBook::Unref::operator()(_EBookSqlite* book) const {
    g_object_unref(book);
}

PeerBook::PeerBook(const std::filesystem::path& file, Indexes indexes) {
    GError* error = nullptr;
    // It misses its mail providers, of which an address book needs none.
    g_log_set_handler(
        "camel", G_LOG_LEVEL_WARNING, [](auto...) {}, nullptr);
    g_type_ensure(E_TYPE_SOURCE_BACKEND_SUMMARY_SETUP);
    const std::unique_ptr<ESource, GlibDelete> source(e_source_new(nullptr, nullptr, nullptr));
    if (indexes == Indexes::asItComes) {
        book_.reset(e_book_sqlite_new(file.c_str(), source.get(), nullptr, &error));
    } else {
        auto* setup = static_cast<ESourceBackendSummarySetup*>(
            e_source_get_extension(source.get(), E_SOURCE_EXTENSION_BACKEND_SUMMARY_SETUP));
        e_source_backend_summary_setup_set_summary_fields(setup, E_CONTACT_FULL_NAME, E_CONTACT_FILE_AS, E_CONTACT_TEL,
                                                          0);
        e_source_backend_summary_setup_set_indexed_fields(setup, E_CONTACT_TEL, E_BOOK_INDEX_PREFIX,
                                                          E_CONTACT_FULL_NAME, E_BOOK_INDEX_PREFIX, 0);
        book_.reset(e_book_sqlite_new_full(file.c_str(), source.get(), setup, nullptr, nullptr, nullptr, nullptr,
                                           nullptr, &error));
    }
    require(book_ != nullptr ? TRUE : FALSE, error);
}

void PeerBook::import(const std::vector<Person>& people) {
    constexpr std::size_t perUnit = 1'000;
    for (std::size_t begin = 0; begin < people.size(); begin += perUnit) {
        GSList* cards = nullptr;
        for (std::size_t i = std::min(people.size(), begin + perUnit); i-- > begin;)
            cards = g_slist_prepend(cards, cardOf(static_cast<int>(i), people[i]).release());
        GError* error = nullptr;
        const gboolean done = e_book_sqlite_add_contacts(book_.get(), cards, nullptr, TRUE, nullptr, &error);
        g_slist_free_full(cards, g_object_unref);
        require(done, error);
    }
}

void PeerBook::put(int number, const Person& person) {
    GError* error = nullptr;
    const Card card = cardOf(number, person);
    require(e_book_sqlite_add_contact(book_.get(), card.get(), nullptr, TRUE, nullptr, &error), error);
}

void PeerBook::remove(int number) {
    GError* error = nullptr;
    require(e_book_sqlite_remove_contact(book_.get(), identifierOf(number).c_str(), nullptr, &error), error);
}

int PeerBook::withNumber(const std::u16string& number) {
    GSList* found = nullptr;
    GError* error = nullptr;
    const auto question = questionOf(E_CONTACT_TEL, E_BOOK_QUERY_IS, number);
    require(e_book_sqlite_search(book_.get(), question.get(), FALSE, &found, nullptr, &error), error);
    const int count = static_cast<int>(g_slist_length(found));
    g_slist_free_full(found,
                      [](gpointer data) { e_book_sqlite_search_data_free(static_cast<EbSqlSearchData*>(data)); });
    return count;
}

int PeerBook::withNamePart(const std::u16string& part) {
    return namesThat(book_.get(), E_BOOK_QUERY_CONTAINS, part);
}

int PeerBook::withNameBeginning(const std::u16string& beginning) {
    return namesThat(book_.get(), E_BOOK_QUERY_BEGINS_WITH, beginning);
}

}  // namespace benchmarks
