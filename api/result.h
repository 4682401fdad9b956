#pragma once

#include "api/managererrors.h"

#include <utility>
#include <variant>

namespace ravelin {

// Success with a value, or failure with an error: what completions receive.
template<class T, class E = ManagerErrors>
class Result
{
public:
    [[nodiscard]] static Result success(T value) { return Result(std::in_place_index<0>, std::move(value)); }
    [[nodiscard]] static Result failure(E error) { return Result(std::in_place_index<1>, std::move(error)); }

    [[nodiscard]] bool isSuccess() const { return m_value.index() == 0; }
    [[nodiscard]] const T &value() const & { return std::get<0>(m_value); }
    [[nodiscard]] T &&value() && { return std::get<0>(std::move(m_value)); }
    [[nodiscard]] const E &error() const { return std::get<1>(m_value); }

private:
    template<std::size_t I, class V>
    Result(std::in_place_index_t<I> index, V &&v)
        : m_value(index, std::forward<V>(v))
    { }
    std::variant<T, E> m_value;
};

} // namespace ravelin
