// What a proxy tells Python about its component: the names dir() lists and
// the text help() shows, both from the component's member table
// (Dispatch::memberNames and describe). A component that cannot list its
// members (one written in Python) shows the explicit forms only.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "seluvorne/dispatch.h"

namespace seluvorne::python {

// The members of `object`, then invoke, get and put.
std::vector<std::string> ProxyDir(const Dispatch& object);

// One line per member: its name, its kinds and the arguments each takes.
std::string ProxyHelp(const Dispatch& object);

// The line of ProxyHelp for one member ("InitKutaiData: method(1)").
std::string MemberHelp(const Dispatch& object, std::string_view member);

}  // namespace seluvorne::python
