// Follows links in child processes whose mounts are all read-only: there the kernel sets no access date. A child
// answers one question after the other, since making it costs as much as a hundred answers.

#include <fcntl.h>
#include <linux/mount.h>
#include <poll.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <charconv>
#include <climits>
#include <csignal>
#include <cstring>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/files/descriptor.h"
#include "platform/files/files.h"
#include "platform/files/files_system.h"

namespace vesk {

namespace {

// A child that nobody asks ends after so many milliseconds, since a volume that it sees cannot be ejected.
constexpr int followersPatience = 200;

// The child, from here to `answerQuestions`: between fork and exit it may make plain system calls alone, since other
// threads may have held locks.

// Closes all that it inherited but the socket, which is moved to 0: a pipe or a file of the parent's is none of its
// business, and nobody may have to wait for its end.
bool keepOnly(int socket) {
    return dup2(socket, 0) == 0 && syscall(SYS_close_range, 1U, ~0U, 0U) == 0;
}

bool enterReadOnlyMounts() {
    mount_attr readOnly{};
    readOnly.attr_set = MOUNT_ATTR_RDONLY;
    readOnly.propagation = MS_SLAVE;  // what is unmounted elsewhere goes here too
    const bool apart = unshare(CLONE_NEWNS) == 0 || unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0;
    return apart && syscall(SYS_mount_setattr, -1, "/", AT_RECURSIVE, &readOnly, sizeof readOnly) == 0;
}

// What a child answers: a mark, and after `foundMark` the path.
constexpr char foundMark = '+';
constexpr char nowhereMark = '-';
using Answer = std::array<char, PATH_MAX + 1>;

// Returns the answer's length; 0 when there is none.
std::size_t answerFor(const char* link, Answer& answer) {
    const int target = open(link, O_PATH | O_CLOEXEC);
    if (target < 0) {
        answer[0] = nowhereMark;
        return errno == EMFILE || errno == ENFILE ? 0 : 1;
    }
    std::array<char, 32> opened{"/proc/self/fd/"};
    std::to_chars(opened.data() + std::strlen(opened.data()), opened.data() + opened.size() - 1, target);
    answer[0] = foundMark;
    const ssize_t length = readlink(opened.data(), answer.data() + 1, answer.size() - 1);
    close(target);
    return length > 0 ? static_cast<std::size_t>(length) + 1 : 0;
}

// A question is a path with the 0 at its end. A child that has no answer ends.
[[noreturn]] void answerQuestions(int socket) {
    if (prctl(PR_SET_PDEATHSIG, SIGKILL) != 0 || !keepOnly(socket) || !enterReadOnlyMounts()) {
        _exit(1);
    }
    std::array<char, PATH_MAX> link;
    Answer answer;
    for (;;) {
        pollfd question{0, POLLIN, 0};
        if (poll(&question, 1, followersPatience) <= 0 || recv(0, link.data(), link.size(), 0) <= 0) {
            _exit(0);
        }
        const std::size_t length = answerFor(link.data(), answer);
        if (length == 0 || send(0, answer.data(), length, MSG_NOSIGNAL) != static_cast<ssize_t>(length)) {
            _exit(1);
        }
    }
}

// One such child. It ends when this does.
class LinkFollower {
public:
    LinkFollower() {
        std::array<int, 2> ends{};
        if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0) {
            return;
        }
        socket_ = Descriptor(ends[0]);
        const Descriptor childs(ends[1]);
        child_ = fork();
        if (child_ == 0) {
            answerQuestions(childs.get());
        }
    }
    LinkFollower(LinkFollower&& other) noexcept
        : socket_(std::move(other.socket_)), child_(std::exchange(other.child_, -1)) {}
    LinkFollower& operator=(LinkFollower&&) = delete;
    LinkFollower(const LinkFollower&) = delete;
    LinkFollower& operator=(const LinkFollower&) = delete;
    ~LinkFollower() {
        socket_.close();
        while (child_ > 0 && waitpid(child_, nullptr, 0) < 0 && errno == EINTR) {
            continue;
        }
    }

    // False when the child has no answer, has ended or was never there.
    bool ask(const std::string& link, std::optional<std::filesystem::path>& target) {
        const std::size_t size = link.size() + 1;
        if (child_ <= 0 || size > PATH_MAX ||
            send(socket_.get(), link.c_str(), size, MSG_NOSIGNAL) != static_cast<ssize_t>(size)) {
            return false;
        }
        Answer answer;
        ssize_t length = 0;
        do {
            length = recv(socket_.get(), answer.data(), answer.size(), 0);
        } while (length < 0 && errno == EINTR);
        if (length <= 0) {
            return false;
        }
        if (answer[0] == foundMark) {
            target = std::string(answer.data() + 1, static_cast<std::size_t>(length) - 1);
        }
        return true;
    }

private:
    Descriptor socket_;
    pid_t child_ = -1;
};

// The children that wait for the next link. Each is asked by one thread at a time, so that a link into a volume that
// does not answer holds up nobody else.
class LinkFollowers {
public:
    static LinkFollowers& all() {
        static LinkFollowers& followers = *new LinkFollowers;
        return followers;
    }

    std::optional<LinkFollower> takeWaiting() {
        const std::lock_guard lock(lock_);
        if (waiting_.empty()) {
            return std::nullopt;
        }
        std::optional<LinkFollower> taken(std::move(waiting_.back()));
        waiting_.pop_back();
        return taken;
    }

    // Ends it instead when nobody has more links.
    void giveBack(LinkFollower follower) {
        const std::lock_guard lock(lock_);
        if (users_ > 0) {
            waiting_.push_back(std::move(follower));
        }
    }

    void addUser() {
        const std::lock_guard lock(lock_);
        ++users_;
    }

    void removeUser() {
        std::vector<LinkFollower> ending;
        const std::lock_guard lock(lock_);
        if (--users_ == 0) {
            ending.swap(waiting_);
        }
    }

private:
    std::mutex lock_;
    std::vector<LinkFollower> waiting_;
    int users_ = 0;
};

}  // namespace

std::shared_ptr<const void> readyToFollowLinks() {
    LinkFollowers::all().addUser();
    return {&LinkFollowers::all(), [](const void*) { LinkFollowers::all().removeUser(); }};
}

bool followWithoutTrace(const std::filesystem::path& link, std::optional<std::filesystem::path>& target) {
    LinkFollowers& followers = LinkFollowers::all();
    // One that waits may have ended meanwhile.
    while (std::optional<LinkFollower> waiting = followers.takeWaiting()) {
        if (waiting->ask(link.native(), target)) {
            followers.giveBack(std::move(*waiting));
            return true;
        }
    }
    LinkFollower fresh;
    const bool answered = fresh.ask(link.native(), target);
    if (answered) {
        followers.giveBack(std::move(fresh));
    }
    return answered;
}

}  // namespace vesk
