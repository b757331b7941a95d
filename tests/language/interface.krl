# A setting's value, and the one before a new one is set.
interface(warnlevel = 2), interface(warnlevel), interface(warnlevel = 3, screenwidth = 60), interface("screenwidth" = 79), interface(screenwidth);
interface(prompt = "? "): interface(prompt = "> ");
interface(nosuch); interface(warnlevel = 77); interface(warnlevel); interface(3); interface();
