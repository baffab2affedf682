# What the reference says of members that a compiler writes or leaves out.
/^ *[A-Za-z].*\(const [A-Za-z]+& *[a-z]*\) = delete;/s/^( *)/\1\/\/\/ Cannot be copied.\n\1/
/^ *[A-Za-z].*\(const [A-Za-z]+& *[a-z]*\) = default;/s/^( *)/\1\/\/\/ Copies what it holds.\n\1/
