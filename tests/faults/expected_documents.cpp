#include "tests/faults/expected_documents.h"

#include <string_view>
#include <utility>

namespace lomaris::test {
namespace {

/// Applies the happenings of a run to the documents.
class Follower {
public:
    Follower(const Scenario& scenario, const Run& run)
        : replacement_(scenario.world.replacement), target_(run.targetBefore), other_(run.otherBefore) {
        for (const Happening& happening : run.happenings) {
            if (happening.who == Who::user) {
                userDid(scenario.disturbance->act);
            } else if (isAttemptToWrite(happening) && happening.fate != Fate::refused && targetRuns_) {
                target_ = withSelectionReplaced(target_, replacement_);
            } else if (happening.isCall("clearContents")) {
                isUsersCopy_ = false;
            } else if (isPost(happening)) {
                keyReaches(receiverOf(happening), happening.about);
            }
        }
        // When the process ends, it fulfils its promise to the document that waits for the text.
        if (waiting_ != nullptr && (waiting_ != &target_ || targetRuns_)) {
            *waiting_ = withSelectionReplaced(*waiting_, replacement_);
        }
    }

    [[nodiscard]] Documents documents() const { return {target_, other_}; }

private:
    void userDid(UserAct act) {
        if (act == UserAct::copies) {
            isUsersCopy_ = true;
            waiting_ = nullptr;
        } else if (act == UserAct::quitsTheTarget) {
            targetRuns_ = false;
        } else if (act == UserAct::switchesApplication) {
            otherIsInFront_ = true;
        }
        target_ = after(act, target_);
    }

    Document* receiverOf(const Happening& post) {
        if (post.isCall("postToSession") && otherIsInFront_) {
            return &other_;
        }
        return targetRuns_ ? &target_ : nullptr;
    }

    void keyReaches(Document* document, std::string_view key) {
        if (document == nullptr) {
            return;
        }
        if (key == "delete") {
            *document = withSelectionDeleted(*document);
        } else if (key == "paste" && isUsersCopy_) {
            *document = withSelectionReplaced(*document, world::copiedMeanwhile);
        } else if (key == "paste") {
            waiting_ = document;
        }
    }

    Text replacement_;
    Document target_;
    Document other_;
    bool targetRuns_ = true;
    bool otherIsInFront_ = false;
    /// True if the pasteboard has the user's copy instead of the replacement.
    bool isUsersCopy_ = false;
    /// The document that gets the replacement when the process fulfils its promise.
    Document* waiting_ = nullptr;
};

}  // namespace

Documents expectedDocuments(const Scenario& scenario, const Run& run) { return Follower(scenario, run).documents(); }

}  // namespace lomaris::test
