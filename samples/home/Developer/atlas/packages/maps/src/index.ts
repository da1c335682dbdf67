export const metresPerDegree = 111_320;
