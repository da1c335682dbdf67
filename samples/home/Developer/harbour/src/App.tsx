import { NavigationContainer } from '@react-navigation/native';
import { HarbourStack } from './navigation/HarbourStack';

export default function App() {
  return (
    <NavigationContainer>
      <HarbourStack />
    </NavigationContainer>
  );
}
