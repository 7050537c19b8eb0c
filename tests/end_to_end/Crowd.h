#pragma once

#include <memory>
#include <string>

// Other programs that record from a source: as many as the sound server allows, so that it refuses the next
// one, as a busy device does.
class CCrowd {
public:
    CCrowd();
    ~CCrowd();
    CCrowd(const CCrowd&) = delete;
    CCrowd& operator=(const CCrowd&) = delete;

    // strServer: the server's address. False if it can't be reached or never refuses.
    bool Gather(const std::string& strServer, const std::string& strSource);
    void Disperse();

private:
    struct Connection;
    std::unique_ptr<Connection> m_pConnection;
};
