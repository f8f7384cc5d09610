#include "darwin/model/objective_c.h"

#include <memory>
#include <set>

#include "darwin/model/misuse.h"

namespace vesk::darwin {

namespace {

struct Object {
    std::string className;
    bool isClass = false;
    bool isShared = false;
    long count = 1;
    std::map<std::string, std::any> values;
};

struct Runtime {
    std::map<std::string, ModelClass> classes;
    std::map<std::string, id> classObjects;
    std::map<id, std::unique_ptr<Object>> objects;
    // The innermost pool comes last: the pool itself, and what it releases.
    std::vector<std::pair<id, std::vector<id>>> pools;
    std::vector<std::string> sent;
};

Runtime& runtime() {
    static Runtime& instance = *new Runtime;
    return instance;
}

id add(const std::string& className, bool isShared, bool isClass) {
    auto object = std::make_unique<Object>();
    object->className = className;
    object->isShared = isShared;
    object->isClass = isClass;
    const id address = reinterpret_cast<id>(object.get());
    runtime().objects[address] = std::move(object);
    return address;
}

Object* find(id address) {
    const auto found = runtime().objects.find(address);
    return found == runtime().objects.end() ? nullptr : found->second.get();
}

const DeclaredMethod* methodOf(const Object& object, const std::string& selector) {
    for (std::string name = object.className; !name.empty();) {
        const auto declared = runtime().classes.find(name);
        if (declared == runtime().classes.end()) {
            return nullptr;
        }
        const auto& methods = object.isClass ? declared->second.ofClass : declared->second.ofObjects;
        if (const auto method = methods.find(selector); method != methods.end()) {
            return &method->second;
        }
        name = declared->second.above;
    }
    return nullptr;
}

void drain(id pool) {
    auto& pools = runtime().pools;
    if (pools.empty() || pools.back().first != pool) {
        misuse("an autorelease pool is drained that is not the innermost one");
        return;
    }
    const std::vector<id> released = std::move(pools.back().second);
    pools.pop_back();
    for (const id object : released) {
        releaseObject(object);
    }
    releaseObject(pool);
}

void declareRoots() {
    ModelClass root{"NSObject", "", {}, {}};
    root.ofObjects["retain"] = {"@", [](id self, const Arguments&) {
                                    retainObject(self);
                                    return std::any(self);
                                }};
    root.ofObjects["release"] = {"v", [](id self, const Arguments&) {
                                     releaseObject(self);
                                     return std::any();
                                 }};
    declareClass(std::move(root));
    ModelClass pool{"NSAutoreleasePool", "NSObject", {}, {}};
    pool.ofClass["alloc"] = {"@", [](id, const Arguments&) { return std::any(makeOwned("NSAutoreleasePool")); }};
    pool.ofObjects["init"] = {"@", [](id self, const Arguments&) {
                                  runtime().pools.emplace_back(self, std::vector<id>());
                                  return std::any(self);
                              }};
    pool.ofObjects["drain"] = {"v", [](id self, const Arguments&) {
                                   drain(self);
                                   return std::any();
                               }};
    declareClass(std::move(pool));
    ModelClass text{"NSString", "NSObject", {}, {}};
    text.ofClass["stringWithUTF8String:"] = {"@*", [](id, const Arguments& sent) {
                                                 const id made = makeAutoreleased("NSString");
                                                 valueOf(made, "text") =
                                                     std::string(std::any_cast<const char*>(sent[0]));
                                                 return std::any(made);
                                             }};
    declareClass(std::move(text));
}

const bool rootsAreDeclared = (declareRoots(), true);

}  // namespace

void declareClass(ModelClass declared) {
    const std::string name = declared.name;
    runtime().classes[name] = std::move(declared);
    runtime().classObjects[name] = add(name, true, true);
}

id makeShared(const std::string& className) {
    return add(className, true, false);
}

id makeOwned(const std::string& className) {
    return add(className, false, false);
}

id makeAutoreleased(const std::string& className) {
    const id made = add(className, false, false);
    if (runtime().pools.empty()) {
        misuse("an object of " + className + " is made without an autorelease pool, and is never released");
    } else {
        runtime().pools.back().second.push_back(made);
    }
    return made;
}

void retainObject(id address) {
    if (Object* object = find(address); object == nullptr) {
        misuse("something is retained that is no object");
    } else if (!object->isShared) {
        ++object->count;
    }
}

void releaseObject(id address) {
    Object* object = find(address);
    if (object == nullptr) {
        misuse("something is released that is no object, or no longer");
    } else if (!object->isShared && --object->count == 0) {
        runtime().objects.erase(address);
    }
}

std::any& valueOf(id address, const std::string& name) {
    static std::any none;
    Object* object = find(address);
    if (object == nullptr) {
        misuse("a value is asked of what is no object");
        none.reset();
        return none;
    }
    return object->values[name];
}

bool isObject(id address) {
    return find(address) != nullptr;
}

const std::vector<std::string>& sentMessages() {
    return runtime().sent;
}

void forgetObjects() {
    for (std::size_t pools = runtime().pools.size(); pools > 0; --pools) {
        misuse("an autorelease pool was not drained");
    }
    runtime().pools.clear();
    for (auto entry = runtime().objects.begin(); entry != runtime().objects.end();) {
        if (entry->second->isClass) {
            ++entry;
            continue;
        }
        if (!entry->second->isShared) {
            misuse("an object of " + entry->second->className + " was never released");
        }
        entry = runtime().objects.erase(entry);
    }
    runtime().sent.clear();
}

std::any dispatch(id receiver, const std::string& selector, const std::string& types, const Arguments& arguments) {
    if (receiver == nullptr) {
        return {};  // as the language has it
    }
    const Object* object = find(receiver);
    if (object == nullptr) {
        misuse("\"" + selector + "\" is sent to what is no object");
        return {};
    }
    runtime().sent.push_back(object->className + " " + selector);
    const DeclaredMethod* method = methodOf(*object, selector);
    if (method == nullptr) {
        misuse(object->className + " does not know \"" + selector + "\"");
        return {};
    }
    if (method->types != types) {
        misuse(object->className + " " + selector + " has the types " + method->types + " and is sent with " + types);
        return {};
    }
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const id* sent = std::any_cast<id>(&arguments[i]);
        if (sent != nullptr && *sent != nullptr && find(*sent) == nullptr) {
            misuse(object->className + " " + selector + " is sent what is no object");
            return {};
        }
    }
    return method->method(receiver, arguments);
}

}  // namespace vesk::darwin

extern "C" {

id objc_getClass(const char* name) {
    const auto& classes = vesk::darwin::runtime().classObjects;
    const auto found = classes.find(name);
    return found == classes.end() ? nullptr : found->second;
}

SEL sel_registerName(const char* name) {
    static std::set<std::string>& names = *new std::set<std::string>;
    return reinterpret_cast<SEL>(names.insert(name).first->c_str());
}

}  // extern "C"
