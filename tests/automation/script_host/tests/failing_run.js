Expect("right", 1, "Long 1");
noSuchThing();
