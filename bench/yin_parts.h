// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <string>

// The pieces that all generated models are put together from.

// A module with the namespace "urn:NAME" and the prefix `prefix`.
std::string Module(const std::string& name, const std::string& prefix, const std::string& body);

std::string Leaf(const std::string& name, const std::string& content);
std::string StringLeaf(const std::string& name);

// "name='value'" with blanks around nothing; the value has no apostrophes.
std::string Type(const std::string& name, const std::string& restrictions = "");
std::string Enumeration(int enums);

// An rpc "op" with that input, in a module "m".
std::string RpcModule(const std::string& before, const std::string& input);

// "<NAME>value</NAME>", and the request "op" of RpcModule().
std::string Element(const std::string& name, const std::string& value);
std::string Request(const std::string& content);

// "s" and the number: the name of one of many.
std::string Numbered(const std::string& name, int64_t number);
