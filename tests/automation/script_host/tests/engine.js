Expect("text", "a", "String 'a'");
Expect("number", 2, "Long 2");
Expect("double", 0.5, "Double 0.5");
Expect("boolean", true, "Boolean True");
try {
  ArrayOf("Double", []);
} catch (error) {
  Expect("error", error.description, "String 'Double is no shape'");
}
