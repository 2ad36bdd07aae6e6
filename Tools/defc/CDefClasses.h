#pragma once

#include "Tools/defc/CDefNode.h"

#include <map>
#include <string>
#include <vector>

namespace tsm {

/// What a `defaults` element declares of one class of objects.
struct CDefClass {
    struct CSlot {
        std::string key;
        std::string value;
        bool isRequired = false; // then there is no default value
    };

    std::string name;         // of objects that give none
    bool isOpen = false;      // objects may have attributes that are not listed
    std::vector<CSlot> slots; // in the order of the compiled node

    /// Sets the slot's content, at its place when it is there already.
    void setSlot(const CSlot& slot);
    const CSlot* findSlot(const std::string& key) const;
};

/// The declared classes, by tag.
class CDefClasses {
public:
    /// False when the tag has been declared before.
    bool declare(const std::string& tag, const CDefClass& declared);
    const CDefClass* find(const std::string& tag) const;

    /// Writes the class's defaults out into an object's node: first the listed attributes in the
    /// order of the declaration, then the others in the author's. Gives back a message for each
    /// attribute that is unknown to the class, or required and not there.
    std::vector<std::string> complete(CDefNode& node) const;

private:
    std::map<std::string, CDefClass> classes;
};

} // namespace tsm
