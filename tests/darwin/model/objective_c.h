// A small Objective-C runtime, stricter than Darwin's: a message to what is no object, one that its class does not
// know, one sent with other types than the class declares, a release too many, an object that nobody releases: each
// fails the test. The rules of ownership are those of Cocoa's "Memory Management Policy": who sends alloc, new, copy or
// retain releases; all else belongs to the innermost autorelease pool. Main thread.
#pragma once

#include <objc/runtime.h>

#include <any>
#include <functional>
#include <map>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace vesk::darwin {

/// The letter with which the runtime's type encoding spells a type (Objective-C Runtime Programming Guide).
template <typename Type>
constexpr char encoded() {
    if constexpr (std::is_same_v<Type, id>) {
        return '@';
    } else if constexpr (std::is_same_v<Type, SEL>) {
        return ':';
    } else if constexpr (std::is_same_v<Type, const char*>) {
        return '*';
    } else if constexpr (std::is_same_v<Type, bool>) {
        return 'B';
    } else if constexpr (std::is_same_v<Type, long>) {
        return 'q';
    } else if constexpr (std::is_same_v<Type, unsigned long>) {
        return 'Q';
    } else if constexpr (std::is_same_v<Type, double>) {
        return 'd';
    } else {
        static_assert(std::is_void_v<Type>, "a type that no message of Vesk's has");
        return 'v';
    }
}

using Arguments = std::vector<std::any>;
/// What a method does: the receiver, what it was sent, and its result (empty for none and for nil).
using Method = std::function<std::any(id, const Arguments&)>;

struct DeclaredMethod {
    /// Result first, then the arguments: "v@q" takes an object and a number.
    std::string types;
    Method method;
};

/// A class: its methods and those of its metaclass, by selector, and the class above it.
struct ModelClass {
    std::string name;
    std::string above = "NSObject";
    std::map<std::string, DeclaredMethod> ofClass;
    std::map<std::string, DeclaredMethod> ofObjects;
};

/// Declares a class; once, before a test runs.
void declareClass(ModelClass declared);

/// Makes an object that nobody has to release, such as the application. It lives until `forgetObjects`.
id makeShared(const std::string& className);
/// Makes an object that its caller has to release.
id makeOwned(const std::string& className);
/// Makes an object that the innermost autorelease pool releases.
id makeAutoreleased(const std::string& className);
void retainObject(id object);
void releaseObject(id object);

/// A value that an object has, by name.
std::any& valueOf(id object, const std::string& name);
/// The same as a type; its default when the object has no such value.
template <typename Type>
Type valueOr(id object, const std::string& name, Type absent = Type()) {
    const Type* value = std::any_cast<Type>(&valueOf(object, name));
    return value == nullptr ? absent : *value;
}

bool isObject(id object);

/// The messages sent since `forgetObjects`, as "NSWindow setStyleMask:".
const std::vector<std::string>& sentMessages();

/// Fails the test for each object that should have been released and each pool that was not drained; then begins anew.
void forgetObjects();

/// Sends a message: the hook behind `send`.
std::any dispatch(id receiver, const std::string& selector, const std::string& types, const Arguments& arguments);

template <typename Result, typename... Sent>
Result sendMessage(id receiver, const char* selector, Sent... sent) {
    const std::string types{encoded<Result>(), encoded<Sent>()...};
    const std::any result = dispatch(receiver, selector, types, Arguments{std::any(sent)...});
    if constexpr (!std::is_void_v<Result>) {
        const Result* value = std::any_cast<Result>(&result);
        return value == nullptr ? Result{} : *value;
    }
}

}  // namespace vesk::darwin
