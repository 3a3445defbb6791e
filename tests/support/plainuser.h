// A test without the rights of root.
#pragma once

namespace TestSupport {

// While it lives, a process of root acts as a user that owns nothing. A process of another user
// stays as it is.
class PlainUser
{
public:
    PlainUser();
    ~PlainUser();
    PlainUser(const PlainUser&) = delete;
    PlainUser& operator=(const PlainUser&) = delete;

private:
    bool m_wasRoot;
};

} // namespace TestSupport
