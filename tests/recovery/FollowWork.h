#pragma once

// Four programs change contacts and categories at random, each for itself, while watchers follow: managers with a
// window, in programs of their own. When all is quiet the phone book's tables must be what the contacts and the
// categories make of them, so far as they do not depend on when a change was followed.

namespace follow_test {

/// One watcher, or two at once, follow that many changes.
void expectFollowed(unsigned changes, unsigned watchers);

/// The one watcher is killed in the first half of the changes and started again before the second: what it missed may
/// be missing, and nothing else may be wrong.
void expectFollowedByOneThatIsKilled(unsigned changes);

}  // namespace follow_test
