#include <nlohmann/json.hpp>

#include <QtGlobal>

#include <random>
#include <string>
#include <vector>

// Changes JSON as JSON, three times in four: bytes that change at random seldom leave a document that can be
// read.

using Json = nlohmann::ordered_json;

extern "C" std::size_t LLVMFuzzerMutate(quint8* bytes, std::size_t size, std::size_t longest);

namespace {

class Mutation
{
public:
    Mutation(Json* document, unsigned int seed)
        : m_random(seed)
    {
        collect(document);
    }

    void apply()
    {
        Json& victim = anyNode();
        switch (below(5)) {
        case 0:
            victim = anyScalar();
            break;
        case 1:
            victim = Json(anyNode());
            break;
        case 2:
            erase(&victim);
            break;
        default:
            insert(&victim);
            break;
        }
    }

private:
    void collect(Json* node)
    {
        m_nodes.push_back(node);
        for (auto& item : node->items()) {
            if (node->is_object()) {
                m_keys.push_back(item.key());
            }
            if (node->is_structured()) {
                collect(&item.value());
            }
        }
    }

    std::size_t below(std::size_t limit) { return m_random() % limit; }
    Json& anyNode() { return *m_nodes.at(below(m_nodes.size())); }

    Json anyScalar()
    {
        static const Json scalars = {
            nullptr,       true, false,        0,     1,  -1,          2,   65535,
            65536,         1.5,  2147483648.0, 1e300, "", "\n\u0000x", "a", Json::array(),
            Json::object()};
        return scalars.at(below(scalars.size()));
    }

    void erase(Json* node)
    {
        if (!node->empty() && node->is_structured()) {
            node->erase(std::next(node->begin(), static_cast<std::ptrdiff_t>(below(node->size()))));
        }
    }

    void insert(Json* node)
    {
        const Json value = below(2) == 0 ? anyScalar() : Json(anyNode());
        if (node->is_array()) {
            node->insert(std::next(node->begin(), static_cast<std::ptrdiff_t>(below(node->size() + 1))),
                         value);
        } else if (node->is_object()) {
            (*node)[m_keys.empty() ? std::string() : m_keys.at(below(m_keys.size()))] = value;
        } else {
            *node = value;
        }
    }

    std::mt19937 m_random;
    std::vector<Json*> m_nodes;
    std::vector<std::string> m_keys;
};

} // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(quint8* bytes, std::size_t size, std::size_t longest,
                                               unsigned int seed)
{
    Json document =
        seed % 4 == 0 ? Json(Json::value_t::discarded) : Json::parse(bytes, bytes + size, nullptr, false);
    if (document.is_discarded()) {
        return LLVMFuzzerMutate(bytes, size, longest);
    }
    Mutation(&document, seed / 4).apply();
    const std::string text = document.dump(-1, ' ', false, Json::error_handler_t::replace);
    if (text.size() > longest) {
        return LLVMFuzzerMutate(bytes, size, longest);
    }
    std::copy(text.begin(), text.end(), bytes);
    return text.size();
}
