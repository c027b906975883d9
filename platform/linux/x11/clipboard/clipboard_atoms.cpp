#include "platform/linux/x11/clipboard/clipboard_atoms.h"

#include "platform/linux/x11/clipboard/clipboard_targets.h"

#include <algorithm>
#include <cstddef>

namespace lomaris {

namespace {

constexpr std::size_t mostNames = 65536;

/// So few requests that they fit into the buffer of the socket: sending them never blocks, even if the server hangs.
constexpr std::size_t batch = 256;

template <typename Item, typename Use>
void inBatches(std::span<const Item> items, Use use) {
    for (std::size_t begin = 0; begin < items.size(); begin += batch) {
        use(items.subspan(begin, std::min(batch, items.size() - begin)));
    }
}

}  // namespace

xcb_atom_t ClipboardAtoms::atom(std::string_view name) { return atoms({&name, 1}).front(); }

std::vector<xcb_atom_t> ClipboardAtoms::atoms(std::span<const std::string_view> names) {
    makeRoomFor(names.size());
    inBatches(names, [this](std::span<const std::string_view> some) { fetchAtoms(some); });
    std::vector<xcb_atom_t> result;
    result.reserve(names.size());
    for (const std::string_view name : names) {
        const auto known = atoms_.find(std::string(name));
        result.push_back(known == atoms_.end() ? xcb_atom_t{XCB_ATOM_NONE} : known->second);
    }
    return result;
}

std::vector<std::string> ClipboardAtoms::names(std::span<const xcb_atom_t> atoms) {
    makeRoomFor(atoms.size());
    inBatches(atoms, [this](std::span<const xcb_atom_t> some) { fetchNames(some); });
    std::vector<std::string> result;
    result.reserve(atoms.size());
    for (const xcb_atom_t atom : atoms) {
        const auto known = names_.find(atom);
        result.push_back(known == names_.end() ? std::string() : known->second);
    }
    return result;
}

void ClipboardAtoms::fetchAtoms(std::span<const std::string_view> names) {
    const XcbFunctions& xcb = connection_.xcb();
    struct Asked {
        std::string_view name;
        xcb_intern_atom_cookie_t cookie;
    };
    std::vector<Asked> asked;
    for (const std::string_view name : names) {
        if (name.size() <= longestTargetName && !atoms_.contains(std::string(name))) {
            asked.push_back(
                {name, xcb.intern_atom(connection_.handle(), 0, static_cast<std::uint16_t>(name.size()), name.data())});
        }
    }
    for (const Asked& question : asked) {
        if (const auto reply = connection_.wait<xcb_intern_atom_reply_t>(question.cookie)) {
            remember(question.name, reply->atom);
        }
    }
}

void ClipboardAtoms::fetchNames(std::span<const xcb_atom_t> atoms) {
    const XcbFunctions& xcb = connection_.xcb();
    struct Asked {
        xcb_atom_t atom;
        xcb_get_atom_name_cookie_t cookie;
    };
    std::vector<Asked> asked;
    for (const xcb_atom_t atom : atoms) {
        if (!names_.contains(atom)) {
            asked.push_back({atom, xcb.get_atom_name(connection_.handle(), atom)});
        }
    }
    for (const Asked& question : asked) {
        const auto reply = connection_.wait<xcb_get_atom_name_reply_t>(question.cookie);
        if (reply && reply->name_len <= longestTargetName) {
            const auto length = static_cast<std::size_t>(xcb.get_atom_name_name_length(reply.get()));
            remember({xcb.get_atom_name_name(reply.get()), length}, question.atom);
        }
    }
}

void ClipboardAtoms::makeRoomFor(std::size_t count) {
    if (names_.size() + count > mostNames) {
        atoms_.clear();
        names_.clear();
    }
}

void ClipboardAtoms::remember(std::string_view name, xcb_atom_t atom) {
    atoms_.insert_or_assign(std::string(name), atom);
    names_.insert_or_assign(atom, std::string(name));
}

}  // namespace lomaris
