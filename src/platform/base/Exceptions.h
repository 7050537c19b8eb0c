#pragma once

#include <exception>

// What can be thrown inside a layer. None of them leaves a function that reports by its result.

// A file could not be read or written.
class CFileException final : public std::exception {
public:
    const char* what() const noexcept override { return "the file could not be read or written"; }
};

// The caller asked for what can't be had.
class CUserException final : public std::exception {
public:
    const char* what() const noexcept override { return "the request can't be met"; }
};
