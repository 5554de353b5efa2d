/* SPDX-License-Identifier: BSD-2-Clause */
// A function and its self: how a road is given what to do. Refers to the function object, which must live as long as it
// is called; a lambda written as an argument lives until the called function returns.
#pragma once

#include <type_traits>

template <class Signature> class OwnFunction;

template <class Result, class... Arguments> class OwnFunction<Result(Arguments...)> {
public:
    template <class F, class = std::enable_if_t<!std::is_base_of<OwnFunction, F>::value>>
    OwnFunction(const F& function)
        : self_(&function)
        , call_([](const void* self, Arguments... arguments) -> Result {
            return (*static_cast<const F*>(self))(arguments...);
        })
    {
    }

    Result operator()(Arguments... arguments) const { return call_(self_, arguments...); }

private:
    const void* self_;
    Result (*call_)(const void* self, Arguments... arguments);
};
