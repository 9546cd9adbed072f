// Bytes that something hit.
// SPDX-License-Identifier: MIT

#pragma once

#include <filesystem>
#include <random>
#include <string>
#include <vector>

/// The words of a dictionary file: one in quotes a line, with \xNN, \\ and \" in it.
std::vector<std::string> ReadWords(const std::filesystem::path& dictionary);

/// One of the seeds after some hits: bytes changed, pieces lost, repeated or taken from another seed, words
/// put in, the end cut off. The same for the same random numbers.
std::string Mutation(const std::vector<std::string>& seeds, const std::vector<std::string>& words,
                     std::mt19937& random);
