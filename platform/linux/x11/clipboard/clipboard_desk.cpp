#include "platform/linux/x11/clipboard/clipboard_desk.h"

#include "platform/linux/process/monotonic_clock.h"
#include "platform/linux/x11/clipboard/clipboard_targets.h"
#include "text/utf8.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstring>
#include <utility>

namespace lomaris {

namespace {

/// The atoms of a reply for TARGETS. Empty if it has another type or format.
std::vector<xcb_atom_t> atomsOf(const ReadTarget& list, xcb_atom_t targets) {
    if (list.format != 32 || (list.type != XCB_ATOM_ATOM && list.type != targets)) {
        return {};
    }
    std::vector<xcb_atom_t> atoms(list.bytes.size() / sizeof(xcb_atom_t));
    if (!atoms.empty()) {
        std::memcpy(atoms.data(), list.bytes.data(), atoms.size() * sizeof(xcb_atom_t));
    }
    return atoms;
}

/// Some toolkits include the terminating NUL in their plain text.
std::string_view withoutTrailingNuls(std::string_view bytes) {
    return bytes.substr(0, bytes.find_last_not_of('\0') + 1);
}

}  // namespace

/// The types that another program offers, with their targets, and the state of reading them.
struct ClipboardDesk::ForeignContents {
    ClipboardLook look;
    std::vector<PasteboardType> types;
    std::unordered_map<PasteboardType, xcb_atom_t> targets;
};

class ClipboardDesk::OwnItem final : public PasteboardItem {
public:
    OwnItem(std::weak_ptr<ClipboardDesk> desk, std::weak_ptr<ClipboardContents> contents, std::size_t index)
        : desk_(std::move(desk)), contents_(std::move(contents)), index_(index) {}

    std::vector<PasteboardType> types() override {
        const auto contents = currentContents();
        return contents ? contents->types(index_) : std::vector<PasteboardType>();
    }

    std::optional<Bytes> data(const PasteboardType& type) override {
        const auto contents = currentContents();
        const SharedBytes bytes = contents ? contents->bytes(index_, type) : nullptr;
        return bytes ? std::optional(*bytes) : std::nullopt;
    }

private:
    /// The contents, or null if they are no longer those of the clipboard. (`promised_` may keep replaced contents.)
    [[nodiscard]] std::shared_ptr<ClipboardContents> currentContents() const {
        const auto desk = desk_.lock();
        if (!desk) {
            return nullptr;
        }
        desk->settle();
        const auto contents = contents_.lock();
        return contents == desk->contents_ ? contents : nullptr;
    }

    std::weak_ptr<ClipboardDesk> desk_;
    std::weak_ptr<ClipboardContents> contents_;
    std::size_t index_;
};

class ClipboardDesk::ForeignItem final : public PasteboardItem {
public:
    ForeignItem(std::weak_ptr<ClipboardDesk> desk, ForeignContents contents)
        : desk_(std::move(desk)), contents_(std::move(contents)) {}

    std::vector<PasteboardType> types() override {
        const auto desk = desk_.lock();
        const bool isCurrent = desk && desk->changeCount() == contents_.look.changeCount;
        return isCurrent ? contents_.types : std::vector<PasteboardType>();
    }

    std::optional<Bytes> data(const PasteboardType& type) override {
        const auto desk = desk_.lock();
        return desk ? desk->foreignData(contents_, type) : std::nullopt;
    }

private:
    std::weak_ptr<ClipboardDesk> desk_;
    ForeignContents contents_;
};

ClipboardDesk::ClipboardDesk(KeeperStart startKeeper)
    : ownership_(session_, [this] { letContentsGo(); }),
      server_(session_, ownership_, [this] { return contents_; }),
      reader_(session_, ownership_, [this] { server_.serve(); }),
      keeper_(std::move(startKeeper)) {}

bool ClipboardDesk::open() {
    return session_.open([this](const xcb_generic_event_t& event) { handle(event); });
}

void ClipboardDesk::handle(const xcb_generic_event_t& event) {
    ownership_.handle(event);
    reader_.handle(event);
    server_.handle(event);
}

/// Called when another program has become the owner. Contents that are not published yet are kept.
void ClipboardDesk::letContentsGo() {
    if (!isUnpublished_ && !isPublishing_) {
        contents_.reset();
    }
}

void ClipboardDesk::settle() {
    if (isUnpublished_) {
        static_cast<void>(publish());
    }
    session_.settle();
    ownership_.replaceKeeper();
}

std::int64_t ClipboardDesk::changeCount() {
    settle();
    return ownership_.changeCount();
}

void ClipboardDesk::clear() {
    session_.settle();
    contents_.reset();
    isUnpublished_ = session_.isAlive() && keeper_.isThere();
    if (isUnpublished_) {
        ownership_.countContents();
        contents_ = std::make_shared<ClipboardContents>();
    } else if (ownership_.acquire()) {
        contents_ = std::make_shared<ClipboardContents>();
    }
}

bool ClipboardDesk::write(std::vector<NewPasteboardItem> items) {
    session_.settle();
    ownership_.replaceKeeper();
    if (!contents_ || !session_.isAlive()) {
        return false;
    }
    contents_->append(std::move(items), forms_);
    return keeper_.isThere() || isUnpublished_ ? publish() : true;
}

/// Lets the keeper own the clipboard with the contents of this process, or becomes the owner if there is no keeper.
bool ClipboardDesk::publish() {
    isUnpublished_ = false;
    if (!contents_) {
        return false;
    }
    promised_ = contents_->hasPromise() ? contents_ : nullptr;
    if (const auto window = keeper_.publish(contents_->kept())) {
        ownership_.setKeeper(*window);
        isPublishing_ = true;
        session_.settle();
        isPublishing_ = false;
        ownership_.replaceKeeper();
        // Another program may have taken over since.
        if (!ownership_.isOwner()) {
            contents_.reset();
        }
        return contents_ != nullptr;
    }
    const std::shared_ptr<ClipboardContents> contents = contents_;
    const bool isOwner = ownership_.acquire();
    contents_ = isOwner ? contents : nullptr;
    return isOwner;
}

std::vector<std::unique_ptr<PasteboardItem>> ClipboardDesk::items() {
    settle();
    return contents_ ? ownItems() : foreignItems();
}

std::vector<std::unique_ptr<PasteboardItem>> ClipboardDesk::ownItems() {
    std::vector<std::unique_ptr<PasteboardItem>> items;
    for (std::size_t index = 0; index < contents_->itemCount(); ++index) {
        items.push_back(std::make_unique<OwnItem>(weak_from_this(), contents_, index));
    }
    return items;
}

std::vector<std::unique_ptr<PasteboardItem>> ClipboardDesk::foreignItems() {
    ForeignContents foreign{reader_.look(), {}, {}};
    forms_.clear();
    const std::optional<ReadTarget> list = reader_.read(foreign.look, session_.names().targets);
    if (!list) {
        return {};
    }
    const std::vector<xcb_atom_t> atoms = atomsOf(*list, session_.names().targets);
    const std::vector<std::string> names = session_.atoms().names(atoms);
    for (std::size_t index = 0; index < atoms.size(); ++index) {
        if (!isContentsTarget(names[index])) {
            continue;
        }
        PasteboardType type = typeOfTarget(names[index]);
        if (foreign.targets.try_emplace(type, atoms[index]).second) {
            foreign.look.unread.push_back(atoms[index]);
            foreign.types.push_back(std::move(type));
        }
    }
    std::vector<std::unique_ptr<PasteboardItem>> items;
    if (!foreign.types.empty()) {
        items.push_back(std::make_unique<ForeignItem>(weak_from_this(), std::move(foreign)));
    }
    return items;
}

std::optional<Bytes> ClipboardDesk::foreignData(ForeignContents& foreign, const PasteboardType& type) {
    const auto target = foreign.targets.find(type);
    if (target == foreign.targets.end()) {
        return std::nullopt;
    }
    std::optional<ReadTarget> read = reader_.read(foreign.look, target->second);
    if (!read) {
        return std::nullopt;
    }
    if (type == pasteboard_type::string && read->type == XCB_ATOM_STRING && read->format == 8) {
        return utf8FromLatin1(read->bytes);
    }
    std::string typeName = session_.atoms().names({&read->type, 1}).front();
    if (typeName.empty()) {
        return std::nullopt;
    }
    if (read->format != 8 || typeName != targetOfType(type)) {
        forms_.insert_or_assign(type, PropertyForm{std::move(typeName), read->format});
    }
    return std::move(read->bytes);
}

std::optional<Text> ClipboardDesk::string() {
    settle();
    return contents_ ? contents_->string() : foreignString();
}

std::optional<Text> ClipboardDesk::foreignString() {
    ClipboardLook look = reader_.look();
    constexpr std::array<std::string_view, 4> names{clipboard_target::utf8String, clipboard_target::utf8PlainText,
                                                    clipboard_target::string, clipboard_target::plainText};
    for (const xcb_atom_t target : session_.atoms().atoms(names)) {
        const std::optional<ReadTarget> read = reader_.read(look, target);
        if (read && read->format == 8) {
            const std::string_view bytes = withoutTrailingNuls(read->bytes);
            return read->type == XCB_ATOM_STRING ? textFromUtf8(utf8FromLatin1(bytes)) : textFromUtf8(bytes);
        }
    }
    return std::nullopt;
}

void ClipboardDesk::serve() {
    if (isUnpublished_) {
        static_cast<void>(publish());
    }
    session_.pump();
    ownership_.replaceKeeper();
    do {
        server_.serve();
    } while (session_.flush());
    if (keeper_.textWasRead() && promised_) {
        promised_->noteTextRead();
    }
}

bool ClipboardDesk::beginOperation() {
    settle();
    if (!session_.isAlive() || !exclusion_.take(ownership_.keeper())) {
        return false;
    }
    isProtected_ = false;
    keeper_.begin();
    return true;
}

void ClipboardDesk::protect(const std::vector<PasteboardItemContents>& saved) {
    if (!keeper_.isThere()) {
        return;
    }
    ClipboardContents contents;
    std::vector<NewPasteboardItem> items;
    items.reserve(saved.size());
    for (const PasteboardItemContents& item : saved) {
        items.push_back({.data = item, .promisedTypes = {}, .provider = nullptr});
    }
    contents.append(std::move(items), forms_);
    isProtected_ = keeper_.protect(contents.kept());
}

void ClipboardDesk::expectPaste(Duration minimumWait, Duration graceWait) {
    settle();
    keeper_.expectPaste(minimumWait, graceWait);
    if (keeper_.descriptor() >= 0) {
        // The keeper has its own share of the exclusive use until the text was read, even if this process dies.
        exclusion_.release();
    }
}

void ClipboardDesk::endOperation() {
    settle();
    // If this process has lost the server, the keeper restores the clipboard as after a death.
    if (!session_.isAlive()) {
        return;
    }
    isProtected_ = false;
    keeper_.end();
    exclusion_.release();
}

void ClipboardDesk::finish() {
    settle();
    if (!session_.isAlive()) {
        return;
    }
    if (contents_) {
        contents_->keepPromises();
    }
    exclusion_.release();
    keeper_.finish();
}

}  // namespace lomaris
