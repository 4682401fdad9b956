#pragma once

#include "api/fatalerror.h"

#include <QString>

#include <stdexcept>

namespace ravelin::test {

// Thrown instead of stopping the process while a FatalErrorTrap is alive.
struct FatalErrorRaised : std::runtime_error
{
    explicit FatalErrorRaised(const QString &message)
        : std::runtime_error(message.toStdString())
        , message(message)
    { }
    QString message;
};

// Turns fatal errors into FatalErrorRaised exceptions for the lifetime of the
// object, so that a test can check a path that would stop the process:
//     FatalErrorTrap trap;
//     QVERIFY_THROWS_EXCEPTION(FatalErrorRaised, decodeSomething());
class FatalErrorTrap
{
public:
    FatalErrorTrap()
        : m_previous(
            setFatalErrorHandler([](const QString &message, const char *) { throw FatalErrorRaised(message); }))
    { }
    ~FatalErrorTrap() { setFatalErrorHandler(m_previous); }
    FatalErrorTrap(const FatalErrorTrap &) = delete;
    FatalErrorTrap &operator=(const FatalErrorTrap &) = delete;

private:
    FatalErrorHandler m_previous;
};

} // namespace ravelin::test
