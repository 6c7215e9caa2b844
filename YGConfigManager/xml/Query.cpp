// SPDX-License-Identifier: MIT
#include "YGConfigManager/xml/Query.h"

#include <algorithm>
#include <clocale>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

#include "YGConfigManager/text/Characters.h"
#include "YGConfigManager/text/Utf8.h"
#include "YGConfigManager/xml/Tree.h"

namespace yg::xml {

namespace {

/// What an expression's value is. XPath 1.0 without variables knows it from the text alone.
enum class Type : std::uint8_t {
    nodes,
    boolean,
    string,
    /// A string literal of ASCII characters.
    asciiLiteral,
    number,
};

/// What a function answers and what its arguments are turned into.
struct Function {
    std::string_view name;
    Type result;
    enum : std::uint8_t { anything, strings, translation } arguments = anything;
};

/// The functions that pugixml evaluates as XPath has them; the number of arguments is its affair.
/// Not among them:
/// - string-length, substring: count bytes.
/// - round: adds a half, which rounds odd integers from 2^52 and the number before 0.5 up.
/// - lang: is false on attributes.
/// - namespace-uri: gives text, comments and processing instructions the default namespace, and
///   does not know the prefix xml.
constexpr Function functions[] = {
    {"boolean", Type::boolean},
    {"ceiling", Type::number},
    {"concat", Type::string, Function::strings},
    {"contains", Type::boolean, Function::strings},
    {"count", Type::number},
    {"false", Type::boolean},
    {"floor", Type::number},
    {"id", Type::nodes},
    {"last", Type::number},
    {"local-name", Type::string},
    {"name", Type::string},
    {"normalize-space", Type::string, Function::strings},
    {"not", Type::boolean},
    {"number", Type::number},
    {"position", Type::number},
    {"starts-with", Type::boolean, Function::strings},
    {"string", Type::string, Function::strings},
    {"substring-after", Type::string, Function::strings},
    {"substring-before", Type::string, Function::strings},
    {"sum", Type::number},
    {"translate", Type::string, Function::translation},
    {"true", Type::boolean},
};

constexpr int relational = 4;
constexpr int additive = 5;
constexpr int multiplicative = 6;
constexpr int unionOfNodes = 7;

struct Operator {
    std::string_view name;
    int binding;  ///< the higher, the tighter
};

constexpr Operator operators[] = {
    {"or", 1},
    {"and", 2},
    {"=", 3},
    {"!=", 3},
    {"<", relational},
    {"<=", relational},
    {">", relational},
    {">=", relational},
    {"+", additive},
    {"-", additive},
    {"*", multiplicative},
    {"div", multiplicative},
    {"mod", multiplicative},
    {"|", unionOfNodes},
};

constexpr std::string_view nodeTypes[] = {"comment", "node", "processing-instruction", "text"};

bool isAscii(std::string_view text) {
    return std::all_of(text.begin(), text.end(),
                       [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

/// Reads an expression by the grammar of XPath 1.0, for what pugixml would take but not evaluate as
/// XPath has it. What is certain to fail in pugixml need not fail here. One pass over the text.
class Reader {
public:
    explicit Reader(std::string_view expression) : rest_(expression) { advance(); }

    bool accepts() { return expression(0).has_value() && token_.kind == Kind::end; }

    /// What the expression may reach; of use once it is accepted.
    QueryReach reach() const { return reach_; }

private:
    enum class Kind : std::uint8_t { end, wrong, name, literal, number, symbol };

    struct Token {
        Kind kind = Kind::end;
        std::string_view text;
    };

    using MaybeType = std::optional<Type>;

    void skipSpace() {
        while (!rest_.empty() && text::isWhiteSpace(rest_.front()))
            rest_.remove_prefix(1);
    }

    void take(Kind kind, std::size_t size) {
        token_ = {kind, rest_.substr(0, size)};
        rest_.remove_prefix(size);
    }

    void advance() {
        skipSpace();
        if (rest_.empty()) {
            token_ = {};
            return;
        }
        const char c = rest_.front();
        if (c == '"' || c == '\'') {
            const std::size_t end = rest_.find(c, 1);
            if (end == std::string_view::npos)
                take(Kind::wrong, rest_.size());
            else
                take(Kind::literal, end + 1);
        } else if (text::isDigit(c) || (c == '.' && rest_.size() > 1 && text::isDigit(rest_[1]))) {
            const std::size_t whole = digitsFrom(0);
            const bool hasPoint = whole < rest_.size() && rest_[whole] == '.';
            take(Kind::number, hasPoint ? digitsFrom(whole + 1) : whole);
        } else if (const std::size_t size = symbolSize()) {
            take(Kind::symbol, size);
        } else {
            takeName();
        }
    }

    std::size_t digitsFrom(std::size_t at) const {
        while (at < rest_.size() && text::isDigit(rest_[at]))
            ++at;
        return at;
    }

    std::size_t symbolSize() const {
        for (const std::string_view two : {"//", "::", "..", "!=", "<=", ">="}) {
            if (rest_.substr(0, 2) == two)
                return 2;
        }
        constexpr std::string_view single = "()[]@,/|+-=<>*.";
        return single.find(rest_.front()) == std::string_view::npos ? 0 : 1;
    }

    /// The end of what may be a name without a colon.
    std::size_t nameEnd(std::size_t from) const {
        constexpr std::string_view others = " \t\r\n()[]@,/|+=<>*!:\"'$&;#";
        return std::min(rest_.find_first_of(others, from), rest_.size());
    }

    /// A name, `prefix:name` or `prefix:*`.
    void takeName() {
        std::size_t end = nameEnd(0);
        bool right = isXmlName(rest_.substr(0, end));
        if (end + 1 < rest_.size() && rest_[end] == ':' && rest_[end + 1] != ':') {
            const std::size_t local = end + 1;
            end = rest_[local] == '*' ? local + 1 : nameEnd(local);
            right = right && (rest_[local] == '*' || isXmlName(rest_.substr(local, end - local)));
        }
        take(right ? Kind::name : Kind::wrong, right ? end : rest_.size());
    }

    bool is(std::string_view symbol) const {
        return token_.kind == Kind::symbol && token_.text == symbol;
    }

    bool skip(std::string_view symbol) {
        if (!is(symbol))
            return false;
        advance();
        return true;
    }

    /// Whether the next token begins so.
    bool isBefore(std::string_view symbol) {
        skipSpace();
        return rest_.substr(0, symbol.size()) == symbol;
    }

    /// How tightly the token binds as an operator; 0 for what is none.
    int binding() const {
        const Kind kind = token_.kind;
        const auto* found =
            std::find_if(std::begin(operators), std::end(operators), [&](const Operator& one) {
                return one.name == token_.text && (kind == Kind::name || kind == Kind::symbol);
            });
        return found == std::end(operators) ? 0 : found->binding;
    }

    static MaybeType combined(int binding, Type left, Type right) {
        const bool hasNodes = left == Type::nodes || right == Type::nodes;
        const bool hasBoolean = left == Type::boolean || right == Type::boolean;
        // pugixml compares the numbers of the nodes, not whether there are any.
        if (binding == relational && hasNodes && hasBoolean)
            return std::nullopt;
        if (binding == unionOfNodes)
            return left == right && hasNodes ? MaybeType(Type::nodes) : std::nullopt;
        return binding >= additive ? Type::number : Type::boolean;
    }

    /// An expression whose operators bind more tightly than `outer`.
    MaybeType expression(int outer) {
        // pugixml counts at least as many levels, and takes no more.
        constexpr std::size_t deepest = 1024;
        if (depth_ == deepest)
            return std::nullopt;
        ++depth_;
        MaybeType type = operand();
        while (type && binding() > outer) {
            const int operation = binding();
            advance();
            const MaybeType right = expression(operation);
            type = right ? combined(operation, *type, *right) : std::nullopt;
        }
        --depth_;
        return type;
    }

    MaybeType operand() {
        if (!is("-"))
            return path();
        while (skip("-")) {
        }
        return expression(multiplicative) ? MaybeType(Type::number) : std::nullopt;
    }

    MaybeType path() {
        if (is("/") || is("//")) {
            const bool needsStep = is("//");
            advance();
            reach_.isAbsolute = true;
            reach_.leavesSubtree |= needsStep || !beginsWithName();
            return needsStep || beginsStep() ? steps() : Type::nodes;
        }
        if (beginsStep() && !beginsCall()) {
            reach_.beginsWithAnyChild |= predicateDepth_ == 0 && !beginsWithName();
            return steps();
        }

        MaybeType type = primary();
        if (is("[") && (type != Type::nodes || !predicates()))
            return std::nullopt;
        if (skip("/") || skip("//"))
            return type == Type::nodes ? steps() : std::nullopt;
        return type;
    }

    bool beginsStep() const {
        return token_.kind == Kind::name || is(".") || is("..") || is("@") || is("*");
    }

    /// Whether the next step goes to the children of one name.
    bool beginsWithName() { return token_.kind == Kind::name && !isBefore("::") && !isBefore("("); }

    bool isNodeType() const {
        return std::find(std::begin(nodeTypes), std::end(nodeTypes), token_.text) !=
               std::end(nodeTypes);
    }

    bool beginsCall() { return token_.kind == Kind::name && isBefore("(") && !isNodeType(); }

    MaybeType steps() {
        do {
            if (!step())
                return std::nullopt;
        } while (skip("/") || skip("//"));
        return Type::nodes;
    }

    bool step() {
        if (skip("."))
            return true;
        if (skip("..")) {
            reach_.leavesSubtree = true;
            return true;
        }
        if (token_.kind == Kind::name && isBefore("::")) {
            // pugixml knows no namespace nodes and finds none.
            if (token_.text == "namespace")
                return false;
            constexpr std::string_view downwards[] = {"attribute", "child", "descendant",
                                                      "descendant-or-self", "self"};
            reach_.leavesSubtree |= std::find(std::begin(downwards), std::end(downwards),
                                              token_.text) == std::end(downwards);
            advance();
            advance();
        } else {
            skip("@");
        }
        return nodeTest() && predicates();
    }

    bool nodeTest() {
        if (skip("*"))
            return true;
        if (token_.kind != Kind::name)
            return false;
        if (!isBefore("(")) {
            advance();
            return true;
        }
        if (!isNodeType())
            return false;
        const bool mayNameTarget = token_.text == "processing-instruction";
        advance();
        advance();
        if (mayNameTarget && token_.kind == Kind::literal)
            advance();
        return skip(")");
    }

    bool predicates() {
        ++predicateDepth_;
        bool right = true;
        while (right && skip("["))
            right = expression(0) && skip("]");
        --predicateDepth_;
        return right;
    }

    MaybeType primary() {
        const Token token = token_;
        switch (token.kind) {
            case Kind::literal:
                advance();
                return isAscii(token.text) ? Type::asciiLiteral : Type::string;
            case Kind::number:
                advance();
                return Type::number;
            case Kind::name:
                return beginsCall() ? call() : std::nullopt;
            default:
                break;
        }
        if (!skip("("))
            return std::nullopt;
        const MaybeType type = expression(0);
        return skip(")") ? type : std::nullopt;
    }

    MaybeType call() {
        const auto* function =
            std::find_if(std::begin(functions), std::end(functions),
                         [&](const Function& one) { return one.name == token_.text; });
        if (function == std::end(functions))
            return std::nullopt;
        advance();
        advance();
        if (skip(")"))
            return function->result;
        std::size_t number = 0;
        do {
            const MaybeType type = expression(0);
            if (!type || !fits(*function, number, *type))
                return std::nullopt;
            ++number;
        } while (skip(","));
        return skip(")") ? MaybeType(function->result) : std::nullopt;
    }

    static bool fits(const Function& function, std::size_t argument, Type type) {
        if (function.arguments == Function::anything)
            return true;
        // pugixml replaces byte by byte, which is right where no byte is part of a character.
        if (function.arguments == Function::translation && argument > 0)
            return type == Type::asciiLiteral;
        // pugixml writes 16 digits, XPath as many as identify the number. In a locale
        // with a decimal comma, pugixml ends the process.
        return type != Type::number;
    }

    std::string_view rest_;
    Token token_;
    std::size_t depth_ = 0;
    std::size_t predicateDepth_ = 0;
    QueryReach reach_;
};

/// 0, which changes nothing, when memory does not suffice.
const locale_t plainLocale = newlocale(LC_ALL_MASK, "C", nullptr);

/// While one lives, numbers in queries are read and written with a decimal point on this thread:
/// pugixml asks the locale.
class PointForDecimals {
public:
    PointForDecimals() : before_(uselocale(plainLocale)) {}
    ~PointForDecimals() { uselocale(before_); }
    PointForDecimals(const PointForDecimals&) = delete;
    PointForDecimals& operator=(const PointForDecimals&) = delete;

private:
    locale_t before_;
};

/// pugixml would compare places of nodes by walking between them, which takes the square of the
/// number of siblings. One walk through the tree finds them in order.
std::vector<pugi::xml_node> inDocumentOrder(const std::vector<pugi::xml_node>& found) {
    std::unordered_set<const void*> wanted;
    for (const pugi::xml_node node : found)
        wanted.insert(node.internal_object());
    std::vector<pugi::xml_node> sorted;
    const pugi::xml_node top = found.front().root();
    for (pugi::xml_node node = top; node && sorted.size() < wanted.size();
         node = nextInSubtree(node, top)) {
        if (wanted.contains(node.internal_object()))
            sorted.push_back(node);
    }
    return sorted;
}

}  // namespace

std::vector<pugi::xml_node> Query::Compiled::select(pugi::xml_node context) const {
    std::vector<pugi::xml_node> nodes;
    try {
        const PointForDecimals point;
        const pugi::xpath_node_set found = query.evaluate_node_set(context);
        for (const pugi::xpath_node& one : found) {
            // Attributes and hidden white space are nothing that a handle may stand for.
            if (!one.attribute() && isChild(one.node()))
                nodes.push_back(one.node());
        }
        if (!nodes.empty() && found.type() != pugi::xpath_node_set::type_sorted)
            nodes = inDocumentOrder(nodes);
    } catch (const pugi::xpath_exception&) {
        nodes.clear();
    }
    return nodes;
}

Query::Query(OptionalText expression) {
    if (expression->find('\0') != std::string_view::npos || !text::isValidUtf8(*expression))
        return;
    Reader reader(*expression);
    if (!reader.accepts())
        return;
    try {
        const PointForDecimals point;
        auto compiled =
            std::make_shared<Compiled>(std::string(*expression).c_str(), reader.reach());
        if (compiled->query.return_type() == pugi::xpath_type_node_set)
            compiled_ = std::move(compiled);
    } catch (const pugi::xpath_exception&) {
        // An expression that does not compile selects nothing.
    }
}

}  // namespace yg::xml
