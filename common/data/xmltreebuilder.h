// Builds an object tree from the tokens of an XML document, whoever reads these.
#pragma once

#include "data/attributebase.h"
#include "data/containerlist.h"
#include "data/containerstruct.h"
#include "data/containerunion.h"
#include "data/xmldatareader.h"
#include <boost/lexical_cast.hpp>
#include <algorithm>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Orv::Data {

// Tokens is a class with the operations
//   next()                  goes to the next token that is no white space between elements
//   isStart(), isEnd()      say what the token at hand is; an error is neither
//   error()                 returns 0, or what read() shall return
//   isNamed(text), name(buffer)   compare and return the name of the element at hand
//   value(isFilePath, buffer)     returns the text of its attribute `v`, if it has one
//   fail(status), refuse(attribute, text)   return what read() shall return, or throw
//   offset()                returns how much of the document has been read
// Texts may lie in the buffer that was given. They last until the next token.
template <class Tokens>
class XmlTreeBuilder
{
public:
    explicit XmlTreeBuilder(Tokens& tokens) : m_tokens(tokens) {}

    // Reads an element and all that is in it. The start of the element is at hand.
    int read(BaseObject& root)
    {
        m_depth = 1;
        int status = begin(root);
        if (status == 0)
            status = readContainers();
        m_levels.clear();
        return status != 0 ? status : m_tokens.error();
    }

private:
    // One container that has been begun and not ended.
    struct Level
    {
        BaseObject* object;
        ObjectKind kind;
        std::uint64_t pending; // members of a structure that have not been met, a bit each
        std::unique_ptr<BaseObject> child; // of a list or union, while it is read
    };

    static std::uint64_t lowestBits(std::size_t count)
    {
        return count >= 64 ? ~std::uint64_t{0} : (std::uint64_t{1} << count) - 1;
    }
    static std::size_t lowestBit(std::uint64_t bits)
    {
        return static_cast<std::size_t>(__builtin_ctzll(bits));
    }

    void next()
    {
        m_tokens.next();
        if (m_tokens.isStart())
            ++m_depth;
        else if (m_tokens.isEnd())
            --m_depth;
    }

    int expectEnd()
    {
        m_tokens.reportProgress();
        if (!m_tokens.isEnd())
            return m_tokens.fail(XmlReadStatus::EndElementExpected);
        next();
        return m_tokens.error();
    }

    // Leaves the end of the element at hand. The depth limit holds here as well, since a document is
    // refused for it whether or not its elements are known.
    int skipElement()
    {
        const int depth = m_depth;
        while (m_depth >= depth) {
            if (m_depth > XmlDataReader::MaximumDepth)
                return m_tokens.fail(XmlReadStatus::NestingTooDeep);
            next();
            if (m_tokens.error() != 0)
                return m_tokens.error();
        }
        return 0;
    }

    int begin(BaseObject& object)
    {
        if (m_depth > XmlDataReader::MaximumDepth)
            return m_tokens.fail(XmlReadStatus::NestingTooDeep);
        const ObjectKind kind = object.kind();
        if (kind == ObjectKind::Attribute)
            return readAttribute(static_cast<AttributeBase&>(object));
        std::uint64_t pending = 0;
        if (kind == ObjectKind::Struct)
            pending = lowestBits(static_cast<ContainerStructBase&>(object).members().count);
        m_levels.push_back({&object, kind, pending, nullptr});
        next();
        return m_tokens.error();
    }

    int readAttribute(AttributeBase& attribute)
    {
        const bool isFilePath = (attribute.getMeta().valueFlags & ValueFlag::FilePath) != 0;
        const std::optional<std::string_view> text = m_tokens.value(isFilePath, m_text);
        if (!text)
            return m_tokens.fail(XmlReadStatus::AttributeNotFound);
        try {
            attribute.fromString(*text);
        } catch (const boost::bad_lexical_cast&) {
            return m_tokens.refuse(attribute, *text);
        }
        next();
        return m_tokens.error() != 0 ? m_tokens.error() : expectEnd();
    }

    int readContainers()
    {
        while (!m_levels.empty()) {
            int status = 0;
            switch (m_levels.back().kind) {
            case ObjectKind::Struct:
                status = stepStruct(m_levels.back());
                break;
            case ObjectKind::List:
                status = stepList(m_levels.back());
                break;
            default:
                status = stepUnion(m_levels.back());
            }
            if (status != 0)
                return status;
        }
        return 0;
    }

    int endLevel()
    {
        const int status = expectEnd();
        m_levels.pop_back();
        return status;
    }

    int stepStruct(Level& level)
    {
        const MemberSpan members = static_cast<ContainerStructBase*>(level.object)->members();
        if (!m_tokens.isStart()) {
            for (std::uint64_t rest = level.pending; rest != 0; rest &= rest - 1)
                if (!members.rows[lowestBit(rest)].meta->isOptional)
                    return m_tokens.fail(XmlReadStatus::MemberMissing);
            return endLevel();
        }
        // In declaration order, so that a file in the order of writing hits at once.
        for (std::uint64_t rest = level.pending; rest != 0; rest &= rest - 1) {
            const std::size_t index = lowestBit(rest);
            if (!m_tokens.isNamed(members.rows[index].meta->name))
                continue;
            level.pending &= ~(std::uint64_t{1} << index);
            return begin(const_cast<BaseObject&>(*members.object(index)));
        }
        const int status = skipElement();
        return status != 0 ? status : expectEnd();
    }

    int stepList(Level& level)
    {
        auto& list = static_cast<ContainerListBase&>(*level.object);
        if (level.child != nullptr)
            list.pushBack(std::move(level.child));
        if (!m_tokens.isStart())
            return endLevel();
        level.child = list.createChild(m_tokens.name(m_text));
        // An unknown item leaves its own end element at hand, which ends the list in the next step.
        return level.child != nullptr ? begin(*level.child) : skipElement();
    }

    int stepUnion(Level& level)
    {
        auto& alternatives = static_cast<ContainerUnionBase&>(*level.object);
        if (level.child != nullptr) {
            alternatives.set(std::move(level.child));
            return endLevel();
        }
        if (!m_tokens.isStart())
            return endLevel();
        level.child = alternatives.createChild(m_tokens.name(m_text));
        if (level.child != nullptr)
            return begin(*level.child);
        const int status = skipElement();
        return status != 0 ? status : endLevel();
    }

    Tokens& m_tokens;
    std::vector<Level> m_levels;
    int m_depth = 0;    // of the element at hand in the file; an unknown item shifts the levels
    std::string m_text; // of the value or name at hand, kept for its memory
};

} // namespace Orv::Data
